#include "views/controls/ScrollPane.h"

#include <QPainter>
#include <QStyleOptionSlider>
#include <QTimerEvent>

#include "views/controls/Painting.h"
#include "views/controls/Style.h"

namespace tessel {

namespace {

constexpr double handleMargin = 3.5;
constexpr int visibleMilliseconds = 1500;

}  // namespace

ScrollBar::ScrollBar(Qt::Orientation orientation, Hides hides) : QScrollBar(orientation), hides(hides) {
    setAttribute(Qt::WA_Hover);
    setContextMenuPolicy(Qt::PreventContextMenu);
    setAttribute(Qt::WA_OpaquePaintEvent, false);
}

QSize ScrollBar::sizeHint() const {
    const QSize usual = QScrollBar::sizeHint();
    return orientation() == Qt::Vertical ? QSize(thickness, usual.height()) : QSize(usual.width(), thickness);
}

void ScrollBar::sliderChange(SliderChange change) {
    QScrollBar::sliderChange(change);
    if (hides == Hides::whenUnused) use.start(visibleMilliseconds, this);
}

void ScrollBar::timerEvent(QTimerEvent* event) {
    if (event->timerId() != use.timerId()) return QScrollBar::timerEvent(event);
    use.stop();
    update();
}

void ScrollBar::paintEvent(QPaintEvent*) {
    const bool isUsed = hides == Hides::never || use.isActive() || underMouse() || isSliderDown();
    if (minimum() == maximum() || !isUsed) return;
    QStyleOptionSlider option;
    initStyleOption(&option);
    const QRectF handle =
        style()->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarSlider, this);
    QPainter painter(this);
    const double opacity = isSliderDown() ? 0.6 : underMouse() ? 0.45 : 0.25;
    const bool isVertical = orientation() == Qt::Vertical;
    const QMarginsF margins = isVertical ? QMarginsF(handleMargin, 0, handleMargin, 0)
                                         : QMarginsF(0, handleMargin, 0, handleMargin);
    paintBox(painter, {.bounds = handle.marginsRemoved(margins),
                       .radius = thickness / 2.0 - handleMargin,
                       .fill = withOpacity(currentColors().primary, opacity)});
}

ScrollPane::ScrollPane(QWidget* content) {
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setVerticalScrollBar(new ScrollBar(Qt::Vertical));
    setHorizontalScrollBar(new ScrollBar(Qt::Horizontal));
    setWidget(content);
    viewport()->setAutoFillBackground(false);
    content->setAutoFillBackground(false);
}

/// Leaves out that Qt also scrolls to where the focus goes when the control that had it is disabled.
bool ScrollPane::focusNextPrevChild(bool next) {
    return QWidget::focusNextPrevChild(next);  // NOLINT(bugprone-parent-virtual-call)
}

void ScrollPane::reveal(const QWidget& part, int margin) {
    const QRect bounds(part.mapTo(widget(), QPoint()), part.size());
    ensureVisible(bounds.center().x(), bounds.center().y(), bounds.width() / 2 + margin,
                  bounds.height() / 2 + margin);
}

}  // namespace tessel
