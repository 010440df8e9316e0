#pragma once

#include <QColor>
#include <QRectF>

class QPainter;
class QWidget;

namespace tessel {

/// A rounded box. An invalid or transparent colour leaves its part out.
struct RoundedBox {
    QRectF bounds;
    double radius = 0;
    QColor fill = Qt::transparent;
    QColor stroke = Qt::transparent;  ///< one pixel, inside the bounds
};

void paintBox(QPainter& painter, const RoundedBox& box);

/// Two pixels of the accent colour, inside the bounds.
void paintFocusRing(QPainter& painter, const QRectF& bounds, double radius);

/// Whether the widget has the focus and the person moves it with the keyboard.
[[nodiscard]] bool showsKeyboardFocus(const QWidget& widget);

}  // namespace tessel
