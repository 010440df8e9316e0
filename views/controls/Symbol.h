#pragma once

#include <QColor>
#include <QPixmap>
#include <QString>
#include <QWidget>

#include "views/controls/Style.h"

namespace tessel {

/// A symbol as a picture: its name, edge length in device-independent pixels, colour and the device's pixels
/// to each of those. Names are those of the drawings in views/symbols; an unknown one gives a null pixmap.
QPixmap symbolPixmap(const QString& name, int size, const QColor& color, double devicePixelRatio);

/// Paints a symbol into the middle of the bounds, sharp at the painter's device.
void paintSymbol(QPainter& painter, const QString& name, const QRect& bounds, int size, const QColor& color);

/// A symbol on its own. It says nothing to screen readers unless it is given an accessible name.
class SymbolView : public QWidget {
  public:
    struct Fields {
        QString symbol;
        Tone tone = Tone::primary;
        int size = 16;  ///< edge length of the drawing

        bool operator==(const Fields&) const = default;
    };

    explicit SymbolView(const Fields& fields);
    void display(const Fields& fields);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    Fields shown;
};

}  // namespace tessel
