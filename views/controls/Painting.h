#pragma once

#include <QColor>
#include <QRectF>

class QKeyEvent;
class QPainter;
class QWidget;

namespace tessel {

/// Describes a rounded box in pixels. A part whose colour is transparent is left out.
struct RoundedBox {
    QRectF bounds;
    double radius = 0;
    QColor fill = Qt::transparent;
    QColor stroke = Qt::transparent;  ///< one pixel wide, inside the bounds
};

void paintBox(QPainter& painter, const RoundedBox& box);

/// Draws an outline in the accent colour, two pixels wide and inside the bounds.
void paintFocusRing(QPainter& painter, const QRectF& bounds, double radius);

/// Returns whether the widget has the focus and the user moves the focus with the keyboard.
[[nodiscard]] bool showsKeyboardFocus(const QWidget& widget);

/// Returns whether this is one of the two keys of that name.
[[nodiscard]] bool isReturn(const QKeyEvent& event);

/// Returns whether the key presses the control that has the focus.
[[nodiscard]] bool isPressingKey(const QKeyEvent& event);

}  // namespace tessel
