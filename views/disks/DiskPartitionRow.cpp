#include "views/disks/DiskPartitionRow.h"

#include <QHBoxLayout>
#include <QPainter>

#include "model/SDWholeDisk.h"
#include "views/controls/ElidedLabel.h"
#include "views/controls/Painting.h"
#include "views/controls/TextLabel.h"

namespace tessel {

namespace {

constexpr int padding = 7;
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

}  // namespace

DiskPartitionRow::DiskPartitionRow(const SDDiskPartition& partition) {
    ElidedLabel* identifier = elidedLabel(partition.id, identifierLook);
    identifier->setFixedWidth(scaledWithFont(identifierWidth));

    ElidedLabel* name = elidedLabel(partition.displayName(), nameLook);
    ElidedLabel* detail = elidedLabel(partition.detailText(), detailLook);

    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(padding, padding, padding, padding);
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

}  // namespace tessel
