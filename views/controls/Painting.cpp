#include "views/controls/Painting.h"

#include <QKeyEvent>
#include <QPainter>
#include <QWidget>

#include "views/controls/Style.h"

namespace tessel {

namespace {

void paintOutline(QPainter& painter, const QRectF& bounds, double radius, const QPen& pen) {
    const double half = pen.widthF() / 2;
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(bounds.adjusted(half, half, -half, -half), radius - half, radius - half);
}

}  // namespace

void paintBox(QPainter& painter, const RoundedBox& box) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(box.fill);
    painter.drawRoundedRect(box.bounds, box.radius, box.radius);
    paintOutline(painter, box.bounds, box.radius, QPen(box.stroke, 1));
}

void paintFocusRing(QPainter& painter, const QRectF& bounds, double radius) {
    painter.setRenderHint(QPainter::Antialiasing);
    paintOutline(painter, bounds, radius, QPen(currentColors().accent, 2));
}

bool isReturn(const QKeyEvent& event) {
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

bool isPressingKey(const QKeyEvent& event) {
    return isReturn(event) || event.key() == Qt::Key_Space || event.key() == Qt::Key_Select;
}

bool showsKeyboardFocus(const QWidget& widget) {
    return widget.hasFocus() && widget.window()->testAttribute(Qt::WA_KeyboardFocusChange);
}

}  // namespace tessel
