#pragma once

#include <QColor>
#include <QPixmap>
#include <QRect>
#include <QString>

class QPainter;

namespace tessel {

/// Draws a symbol of `size` by `size` device-independent pixels, for a device with `devicePixelRatio` pixels
/// to each of them. The name is that of a drawing in views/controls/symbols; an unknown one gives a null
/// pixmap.
[[nodiscard]] QPixmap symbolPixmap(const QString& name, int size, const QColor& color,
                                   double devicePixelRatio);

/// Paints a symbol in the middle of the bounds, at the resolution of the painter's device.
void paintSymbol(QPainter& painter, const QString& name, const QRect& bounds, int size, const QColor& color);

}  // namespace tessel
