#pragma once

#include <QColor>
#include <QPixmap>
#include <QRect>
#include <QString>
#include <QWidget>

#include "views/controls/Style.h"

class QPainter;

namespace tessel {

/// Draws a symbol of `size` by `size` device-independent pixels, for a device with `devicePixelRatio` pixels
/// to each of them. The name is that of a drawing in views/controls/symbols; an unknown one gives a null
/// pixmap.
[[nodiscard]] QPixmap symbolPixmap(const QString& name, int size, const QColor& color,
                                   double devicePixelRatio);

/// Paints a symbol in the middle of the bounds, at the resolution of the painter's device.
void paintSymbol(QPainter& painter, const QString& name, const QRect& bounds, int size, const QColor& color);

/// Shows a symbol on its own. Screen readers are silent about it unless it is given an accessible name.
class SymbolView : public QWidget {
  public:
    struct Fields {
        QString symbol;
        Tone tone = Tone::primary;
        int size = 16;  ///< edge length of the drawing at the usual font, in pixels

        bool operator==(const Fields&) const = default;
    };

    explicit SymbolView(const Fields& fields);
    void display(const Fields& fields);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    Fields shown;
};

}  // namespace tessel
