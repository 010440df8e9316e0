#pragma once

#include <QColor>
#include <QPixmap>
#include <QRect>
#include <QString>

class QPainter;

namespace tessel {

/// A symbol as a picture: its name, edge length in device-independent pixels, colour and the device's pixels
/// to each of those. Names are those of the drawings in views/controls/symbols; an unknown one gives a null
/// pixmap.
[[nodiscard]] QPixmap symbolPixmap(const QString& name, int size, const QColor& color,
                                   double devicePixelRatio);

/// Paints a symbol into the middle of the bounds, sharp at the painter's device.
void paintSymbol(QPainter& painter, const QString& name, const QRect& bounds, int size, const QColor& color);

}  // namespace tessel
