#include "views/disks/DiskMediaCell.h"

#include <QHBoxLayout>

#include "model/DiskTexts.h"
#include "model/SDCardPolicy.h"
#include "views/controls/ElidedLabel.h"
#include "views/controls/SymbolView.h"
#include "views/controls/TextLabel.h"

namespace tessel {

namespace {

constexpr int symbolSize = 17;

}  // namespace

DiskMediaCell::DiskMediaCell() :
    symbol(new SymbolView({.symbol = {}, .size = symbolSize})),
    kind(new ElidedLabel({.font = FontRole::caption, .weight = QFont::DemiBold}, Qt::ElideRight)),
    connection(
        new ElidedLabel({.font = FontRole::smallestCaption, .tone = Tone::secondary}, Qt::ElideRight)) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(spacing::small);
    row->addWidget(symbol);
    row->addLayout(stackedTexts(kind, connection), 1);
}

void DiskMediaCell::display(const SDWholeDisk& disk) {
    symbol->display({.symbol = QString::fromStdString(mediaSymbol(disk)),
                     .tone = eligibilityFailureReason(disk) ? Tone::secondary : Tone::blue,
                     .size = symbolSize});
    kind->setText(QString::fromStdString(mediaKindText(disk)));
    connection->setText(QString::fromStdString(connectionText(disk)));
}

}  // namespace tessel
