#include "views/controls/FoldingRow.h"

#include <algorithm>

#include "views/controls/Style.h"

namespace tessel {

namespace {

int heightFor(const QLayout& part, int width) {
    return part.hasHeightForWidth() ? part.totalHeightForWidth(width) : part.totalSizeHint().height();
}

}  // namespace

FoldingRow::FoldingRow(QLayout* first, QLayout* second, const Options& options) :
    first(first),
    second(second),
    options(options) {
    setContentsMargins(0, 0, 0, 0);
    addChildLayout(first);
    addChildLayout(second);
}

QSize FoldingRow::sizeHint() const {
    const QSize firstHint = first->totalSizeHint();
    const QSize secondHint = second->totalSizeHint();
    return {firstHint.width() + options.besideSpacing + secondHint.width(),
            std::max(firstHint.height(), secondHint.height())};
}

QSize FoldingRow::minimumSize() const {
    return first->totalMinimumSize().expandedTo(second->totalMinimumSize());
}

int FoldingRow::heightForWidth(int width) const {
    const int secondHeight = heightFor(*second, secondWidth(width));
    if (folds(width)) return heightFor(*first, width) + options.belowSpacing + secondHeight;
    return std::max(heightFor(*first, width - options.besideSpacing - secondWidth(width)), secondHeight);
}

void FoldingRow::setGeometry(const QRect& bounds) {
    QLayout::setGeometry(bounds);
    QRect firstBounds = bounds;
    QRect secondBounds = bounds;
    secondBounds.setWidth(secondWidth(bounds.width()));
    if (folds(bounds.width())) {
        firstBounds.setHeight(heightFor(*first, bounds.width()));
        secondBounds.setTop(firstBounds.bottom() + 1 + options.belowSpacing);
    } else {
        secondBounds.moveRight(bounds.right());
        firstBounds.setRight(secondBounds.left() - 1 - options.besideSpacing);
    }
    first->setGeometry(firstBounds);
    second->setGeometry(secondBounds);
}

bool FoldingRow::folds(int width) const {
    return width < (options.narrowWidth ? scaledWithFont(options.narrowWidth) : sizeHint().width());
}

int FoldingRow::secondWidth(int width) const {
    if (!second->expandingDirections().testFlag(Qt::Horizontal))
        return std::min(width, second->totalSizeHint().width());
    return folds(width) ? width : (width - options.besideSpacing) / 2;
}

QLayoutItem* FoldingRow::itemAt(int index) const {
    return index == 0 ? first : index == 1 ? second : nullptr;
}

}  // namespace tessel
