#include "app/TargetCard.h"

#include <QHBoxLayout>
#include <algorithm>
#include <utility>

#include "app/Keyboard.h"
#include "model/DiskTexts.h"
#include "model/SDCardPolicy.h"
#include "model/VisibleDisks.h"
#include "views/controls/Card.h"
#include "views/controls/FoldingRow.h"

namespace tessel {

namespace {

constexpr TextLook captionLook{.font = FontRole::caption, .tone = Tone::secondary};
constexpr TextLook smallLook{.font = FontRole::smallestCaption, .tone = Tone::secondary};

constexpr int narrowWidth = 512;  // leaves too little beside the controls for the explanation

QString countText(size_t count, const char* noun) {
    return QString::number(count) + " " + noun;
}

}  // namespace

TargetCard::TargetCard(TesselViewModel& viewModel) :
    Card("Target SD Card"),
    viewModel(viewModel),
    shownCount(new TextLabel({}, captionLook)),
    selectableCount(new TextLabel({}, captionLook)),
    hiddenCount(new TextLabel({}, captionLook)),
    table(new CompactDiskTable(
        {.sortAction = [this](DiskSortField field) { sortBy(field); },
         .inspectAction = [this](const SDWholeDisk& disk) { inspect(disk); },
         .selectAction = [this](const SDWholeDisk& disk) { this->viewModel.selectDisk(disk.id); }})),
    emptyLabel(new SymbolLabel("sdcard", {}, captionLook)),
    details(new DiskDetailsDisclosure([this](bool expand) { expandDetails(expand); })),
    noDetails(new SymbolLabel(
        "info.circle",
        "Select a row to make Disk Details available. Details remain collapsed until opened explicitly.",
        smallLook)) {
    buildContent(makeControls());
}

QLayout* TargetCard::makeControls() {
    refreshButton = new Button({.text = "Refresh Disks",
                                .symbol = "arrow.clockwise",
                                .size = Button::Size::small,
                                .key = keyFor(QKeySequence::Refresh, Qt::Key_F5)});
    connect(refreshButton, &Button::clicked, this, [this] { viewModel.refreshDisks(); });
    showAllSwitch = new Switch("Show All Disks", Switch::Size::small);
    connect(showAllSwitch, &Switch::toggled, this, [this](bool showAll) { listAll(showAll); });

    auto* row = new QHBoxLayout;
    row->setSpacing(spacing::medium);
    row->addWidget(refreshButton);
    row->addWidget(showAllSwitch);
    auto* controls = new QVBoxLayout;
    controls->addLayout(row);
    controls->addStretch();
    return controls;
}

void TargetCard::buildContent(QLayout* controls) {
    auto* heading = cardHeading("sdcard", "Target SD Card",
                                "Only physical media whose name or bus protocol explicitly identifies an SD, "
                                "SDHC, SDXC, microSD, or SD/MMC card can be selected. Other disks remain "
                                "hidden unless Show All Disks is enabled.");
    content().addLayout(new FoldingRow(
        heading, controls,
        {.besideSpacing = spacing::page, .belowSpacing = spacing::small, .narrowWidth = narrowWidth}));

    auto* counts = new QHBoxLayout;
    counts->setSpacing(spacing::medium);
    for (auto* count : {shownCount, selectableCount, hiddenCount})
        counts->addWidget(count);
    counts->addStretch();
    content().addLayout(counts);

    content().addWidget(table);
    emptyNote = new QWidget;
    auto* note = new QVBoxLayout(emptyNote);
    note->setContentsMargins(0, spacing::card, 0, spacing::card);
    note->addWidget(emptyLabel);
    content().addWidget(emptyNote);
    content().addWidget(
        wrappedLabel("Use the leftmost radio control to choose the SD-card target. Click a row to make its "
                     "optional details available. Click Disk, Size, or Media to sort.",
                     smallLook));
    content().addWidget(details);
    content().addWidget(noDetails);
}

void TargetCard::sortBy(DiskSortField field) {
    diskSortAscending = field == diskSortField ? !diskSortAscending : true;
    diskSortField = field;
    render();
}

void TargetCard::listAll(bool showAll) {
    showAllDisks = showAll;
    reconcileInspectedDisk();
    render();
}

void TargetCard::inspect(const SDWholeDisk& disk) {
    setInspectedDisk(disk.id);
    render();
}

void TargetCard::expandDetails(bool expand) {
    isDiskDetailsExpanded = expand;
    render();
}

void TargetCard::followDisks() {
    if (viewModel.targets().disks() == followedDisks) return;
    followedDisks = viewModel.targets().disks();
    reconcileInspectedDisk();
}

void TargetCard::reconcileInspectedDisk() {
    setInspectedDisk(
        reconciledInspection(inspectedDiskID, viewModel.targets().selectedDiskID(), listedDisks()));
}

void TargetCard::setInspectedDisk(std::optional<std::string> diskID) {
    if (diskID == inspectedDiskID) return;
    inspectedDiskID = std::move(diskID);
    isDiskDetailsExpanded = false;
}

std::vector<SDWholeDisk> TargetCard::listedDisks() const {
    return visibleDisks(viewModel.targets().disks(), showAllDisks, diskSortField, diskSortAscending);
}

const SDWholeDisk* TargetCard::inspectedDisk() const {
    if (!inspectedDiskID) return nullptr;
    const auto found = std::ranges::find(viewModel.targets().disks(), *inspectedDiskID, &SDWholeDisk::id);
    return found == viewModel.targets().disks().end() ? nullptr : &*found;
}

void TargetCard::render() const {
    const auto listed = listedDisks();
    renderRefreshButton();
    showAllSwitch->setEnabled(!viewModel.isBusy());
    renderCounts(listed);

    table->setVisible(!listed.empty());
    table->display({.disks = listed,
                    .selectedTargetID = viewModel.targets().selectedDiskID(),
                    .inspectedDiskID = inspectedDiskID,
                    .isBusy = viewModel.isBusy(),
                    .sortField = diskSortField,
                    .sortAscending = diskSortAscending});
    emptyNote->setVisible(listed.empty());
    emptyLabel->setText(QString::fromStdString(emptyTableText(viewModel.targets().disks().size())));
    renderDetails();
}

void TargetCard::renderRefreshButton() const {
    const QString hint = viewModel.haveDisksChanged()
                             ? "Disks have come or gone since the last scan. Refresh "
                               "the list to see what has changed."
                             : "";
    refreshButton->setEnabled(!viewModel.isBusy());
    refreshButton->setDot(viewModel.haveDisksChanged());
    refreshButton->setToolTip(refreshButton->withKey(hint.isEmpty() ? refreshButton->text() : hint));
    if (refreshButton->accessibleDescription() != hint) refreshButton->setAccessibleDescription(hint);
}

void TargetCard::renderCounts(const std::vector<SDWholeDisk>& listed) const {
    const auto selectable = static_cast<size_t>(std::ranges::count_if(
        listed, [](const SDWholeDisk& disk) { return !eligibilityFailureReason(disk); }));
    const auto hidden = viewModel.targets().disks().size() - listed.size();
    shownCount->setText(countText(listed.size(), "shown"));
    selectableCount->setText(countText(selectable, "selectable"));
    selectableCount->setLook(
        {.font = FontRole::caption, .tone = selectable > 0 ? Tone::green : Tone::orange});
    hiddenCount->setText(countText(hidden, "hidden"));
    hiddenCount->setVisible(hidden > 0);
}

void TargetCard::renderDetails() const {
    const auto* disk = inspectedDisk();
    details->setVisible(disk);
    noDetails->setVisible(!disk);
    if (!disk) return;
    details->display({.disk = *disk,
                      .isSelectedTarget = disk->id == viewModel.targets().selectedDiskID(),
                      .isExpanded = isDiskDetailsExpanded});
}

}  // namespace tessel
