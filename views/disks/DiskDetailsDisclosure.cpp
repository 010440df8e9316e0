#include "views/disks/DiskDetailsDisclosure.h"

#include <QPainter>
#include <QVBoxLayout>

#include "model/DiskTexts.h"
#include "model/SDCardPolicy.h"
#include "views/controls/DisclosureButton.h"
#include "views/controls/Painting.h"
#include "views/controls/Symbol.h"
#include "views/controls/TextLabel.h"
#include "views/disks/DiskInspectorContent.h"

namespace tessel {

namespace {

constexpr int padding = 11;
constexpr int symbolSize = 18;

Tone tintOf(const DiskDetailsDisclosure::Fields& fields) {
    if (fields.isSelectedTarget) return Tone::green;
    return eligibilityFailureReason(fields.disk) ? Tone::orange : Tone::blue;
}

}  // namespace

DiskDetailsDisclosure::DiskDetailsDisclosure(std::function<void(bool)> expandAction) :
    button(new DisclosureButton),
    symbol(new SymbolView({.symbol = {}, .size = symbolSize})),
    summary(new ElidedLabel({.font = FontRole::smallestCaption, .tone = Tone::secondary}, Qt::ElideMiddle)),
    selectedTarget(
        new SymbolLabel("largecircle.fill.circle", "Selected Target",
                        {.font = FontRole::smallestCaption, .tone = Tone::green, .weight = QFont::Bold})),
    content(new DiskInspectorContent) {
    buildLabel();
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(padding, padding, padding, padding);
    column->setSpacing(10);
    column->addWidget(button);
    column->addWidget(content);
    connect(button, &DisclosureButton::clicked, std::move(expandAction));
}

void DiskDetailsDisclosure::buildLabel() {
    auto* title = new TextLabel("Disk Details", {.font = FontRole::caption, .weight = QFont::Bold});
    selectedTarget->setWordWrap(false);
    button->label().addWidget(symbol);
    button->label().addLayout(stackedTexts(title, summary), 1);
    button->label().addWidget(selectedTarget);
}

void DiskDetailsDisclosure::display(const Fields& fields) {
    if (fields == shown) return;
    shown = fields;
    tint = tintOf(fields);
    symbol->display(
        {.symbol = QString::fromStdString(mediaSymbol(fields.disk)), .tone = tint, .size = symbolSize});
    const QString text = QString::fromStdString(fields.disk.displaySummary());
    summary->setText(text);
    selectedTarget->setVisible(fields.isSelectedTarget);
    button->setAccessibleName("Disk Details, " + text + (fields.isSelectedTarget ? ", Selected Target" : ""));
    button->setChecked(fields.isExpanded);
    content->display(fields.disk);
    content->setVisible(fields.isExpanded);
    update();
}

void DiskDetailsDisclosure::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QColor color = currentColors().of(tint);
    paintBox(painter, {.bounds = rect(),
                       .radius = 12,
                       .fill = withOpacity(color, 0.045),
                       .stroke = withOpacity(color, 0.22)});
}

}  // namespace tessel
