#include "views/disks/DiskInspectorContent.h"

#include <QHBoxLayout>
#include <QPainter>

#include "model/DiskTexts.h"
#include "model/SDWholeDisk.h"
#include "views/controls/DisclosureButton.h"
#include "views/controls/FoldingRow.h"
#include "views/controls/InfoRow.h"
#include "views/controls/Painting.h"
#include "views/controls/TextLabel.h"

namespace tessel {

namespace {

constexpr int partitionPadding = 7;
constexpr int identifierWidth = 66;

constexpr TextLook identifierLook{
    .font = FontRole::smallMonospaced, .tone = Tone::secondary, .weight = QFont::Bold};
constexpr TextLook nameLook{.font = FontRole::caption, .weight = QFont::DemiBold};
constexpr TextLook detailLook{.font = FontRole::smallestCaption, .tone = Tone::secondary};
constexpr TextLook sizeLook{
    .font = FontRole::smallMonospaced, .tone = Tone::secondary, .weight = QFont::DemiBold};

ElidedLabel* elidedLabel(const std::string& text, const TextLook& look) {
    auto* label = new ElidedLabel(look, Qt::ElideMiddle);
    label->setText(QString::fromStdString(text));
    return label;
}

constexpr int narrowWidth = 440;  // leaves too little for the values of two columns
constexpr int partitionSpacing = 6;

QVBoxLayout* columnOf(std::initializer_list<InfoRow*> rows) {
    auto* column = new QVBoxLayout;
    column->setSpacing(spacing::tight);
    for (InfoRow* row : rows)
        column->addWidget(row);
    return column;
}

}  // namespace

DiskPartitionRow::DiskPartitionRow(const SDDiskPartition& partition) {
    ElidedLabel* identifier = elidedLabel(partition.id, identifierLook);
    followApplicationFont(*this,
                          [identifier] { identifier->setFixedWidth(scaledWithFont(identifierWidth)); });

    ElidedLabel* name = elidedLabel(partition.displayName(), nameLook);
    ElidedLabel* detail = elidedLabel(partition.detailText(), detailLook);

    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(partitionPadding, partitionPadding, partitionPadding, partitionPadding);
    row->setSpacing(spacing::small);
    row->addWidget(identifier, 0, Qt::AlignTop);
    row->addLayout(stackedTexts(name, detail), 1);
    row->addWidget(new TextLabel(QString::fromStdString(sizeOrUnknown(partition.sizeBytes)), sizeLook), 0,
                   Qt::AlignTop);
}

void DiskPartitionRow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    paintBox(painter, {.bounds = rect(), .radius = 8, .fill = withOpacity(currentColors().secondary, 0.05)});
}

DiskInspectorContent::DiskInspectorContent() :
    device(new InfoRow("Device")),
    media(new InfoRow("Media")),
    location(new InfoRow("Location")),
    capacity(new InfoRow("Capacity")),
    connection(new InfoRow("Connection")),
    map(new InfoRow("Map")),
    attributes(new InfoRow("Attributes")),
    partitionsButton(new DisclosureButton),
    partitionCount(new TextLabel({}, {.font = FontRole::caption, .weight = QFont::DemiBold})),
    partitions(new QWidget),
    verdict(new SymbolLabel({}, {}, {.font = FontRole::smallestCaption})) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(10);
    column->addLayout(new FoldingRow(
        columnOf({device, media, location}), columnOf({capacity, connection, map}),
        {.besideSpacing = spacing::page, .belowSpacing = spacing::tight, .narrowWidth = narrowWidth}));
    column->addWidget(attributes);
    auto* disclosure = new QVBoxLayout;
    disclosure->setSpacing(partitionSpacing);
    disclosure->addWidget(partitionsButton);
    disclosure->addWidget(partitions);
    column->addLayout(disclosure);
    column->addWidget(verdict);
    partitionsButton->label().addWidget(partitionCount, 1);
    partitions->setVisible(false);
    connect(partitionsButton, &DisclosureButton::toggled, partitions, &QWidget::setVisible);
}

void DiskInspectorContent::display(const SDWholeDisk& disk) {
    if (disk == shown) return;
    if (!shown || shown->id != disk.id) partitionsButton->setChecked(false);
    device->setValue(QString::fromStdString(devicePathAndName(disk)));
    media->setValue(QString::fromStdString(disk.mediaName));
    location->setValue(QString::fromStdString(disk.locationText()));
    capacity->setValue(QString::fromStdString(sizeOrUnknown(disk.sizeBytes)));
    connection->setValue(QString::fromStdString(disk.busProtocol));
    map->setValue(QString::fromStdString(disk.partitionSchemeText()));
    attributes->setValue(QString::fromStdString(disk.capabilitySummary()));
    if (!shown || shown->partitions != disk.partitions) showPartitions(disk);
    showVerdict(disk);
    shown = disk;
}

void DiskInspectorContent::showPartitions(const SDWholeDisk& disk) {
    const QString count = QString::fromStdString(disk.partitionCountText());
    partitionCount->setText(count);
    partitionsButton->setAccessibleName(count);

    qDeleteAll(partitions->findChildren<QWidget*>(Qt::FindDirectChildrenOnly));
    delete partitions->layout();
    auto* column = new QVBoxLayout(partitions);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(partitionSpacing);
    for (const SDDiskPartition& partition : disk.partitions)
        column->addWidget(new DiskPartitionRow(partition));
    if (disk.partitions.empty()) {
        column->addWidget(wrappedLabel("No child partitions or volumes were reported.",
                                       {.font = FontRole::smallestCaption, .tone = Tone::secondary}));
    }
}

void DiskInspectorContent::showVerdict(const SDWholeDisk& disk) {
    const auto reason = protectionText(disk);
    verdict->setSymbol(reason ? "lock.shield.fill" : "checkmark.shield.fill");
    verdict->setLook({.font = FontRole::smallestCaption, .tone = reason ? Tone::orange : Tone::blue});
    verdict->setText(reason ? QString::fromStdString(*reason)
                            : "This device is positively identified as an SD card and passed the current "
                              "physical-media, writable-media, size, and removability checks.");
}

}  // namespace tessel
