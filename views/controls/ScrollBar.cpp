#include "views/controls/ScrollBar.h"

#include <QPainter>
#include <QStyleOptionSlider>

#include "views/controls/Painting.h"
#include "views/controls/Style.h"

namespace tessel {

namespace {

constexpr int barWidth = 12;
constexpr int handleMargin = 3;

}  // namespace

ScrollBar::ScrollBar() : QScrollBar(Qt::Vertical) {
    setAttribute(Qt::WA_Hover);
    setAttribute(Qt::WA_OpaquePaintEvent, false);
}

QSize ScrollBar::sizeHint() const {
    return {barWidth, QScrollBar::sizeHint().height()};
}

void ScrollBar::paintEvent(QPaintEvent*) {
    if (minimum() == maximum()) return;
    QStyleOptionSlider option;
    initStyleOption(&option);
    const QRectF handle =
        style()->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarSlider, this);
    QPainter painter(this);
    const double opacity = isSliderDown() ? 0.65 : underMouse() ? 0.55 : 0.42;
    paintBox(painter, {.bounds = handle.adjusted(handleMargin, 0, -handleMargin, 0),
                       .radius = barWidth / 2.0 - handleMargin,
                       .fill = withOpacity(currentColors().primary, opacity)});
}

}  // namespace tessel
