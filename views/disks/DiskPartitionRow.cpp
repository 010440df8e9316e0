#include "views/disks/DiskPartitionRow.h"

#include <QHBoxLayout>
#include <QPainter>

#include "model/DiskTexts.h"
#include "views/controls/ElidedLabel.h"
#include "views/controls/Painting.h"

namespace tessel {

namespace {

constexpr int padding = 7;
constexpr int identifierWidth = 66;

ElidedLabel* elidedLabel(const std::string& text, const TextLook& look, Qt::TextElideMode mode) {
    auto* label = new ElidedLabel(look, mode);
    label->setText(QString::fromStdString(text));
    return label;
}

}  // namespace

DiskPartitionRow::DiskPartitionRow(const SDDiskPartition& partition) {
    const TextLook identifierLook{
        .font = FontRole::smallMonospaced, .tone = Tone::secondary, .weight = QFont::Bold};
    const TextLook sizeLook{
        .font = FontRole::smallMonospaced, .tone = Tone::secondary, .weight = QFont::DemiBold};
    ElidedLabel* identifier = elidedLabel(partition.id, identifierLook, Qt::ElideMiddle);
    identifier->setFixedWidth(scaledWithFont(identifierWidth));

    auto* names = new QVBoxLayout;
    names->setSpacing(1);
    names->addWidget(elidedLabel(partition.displayName(),
                                 {.font = FontRole::caption, .weight = QFont::DemiBold}, Qt::ElideMiddle));
    names->addWidget(elidedLabel(partition.detailText(),
                                 {.font = FontRole::smallestCaption, .tone = Tone::secondary},
                                 Qt::ElideMiddle));

    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(padding, padding, padding, padding);
    row->setSpacing(spacing::small);
    row->addWidget(identifier, 0, Qt::AlignTop);
    row->addLayout(names, 1);
    row->addWidget(new TextLabel(QString::fromStdString(partitionSizeText(partition)), sizeLook), 0,
                   Qt::AlignTop);
}

void DiskPartitionRow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    paintBox(painter, {.bounds = rect(), .radius = 8, .fill = withOpacity(currentColors().secondary, 0.05)});
}

}  // namespace tessel
