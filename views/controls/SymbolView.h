#pragma once

#include <QString>
#include <QWidget>

#include "views/controls/Style.h"

namespace tessel {

/// Shows a symbol on its own. Screen readers are silent about it unless it is given an accessible name.
class SymbolView : public QWidget {
  public:
    struct Fields {
        QString symbol;
        Tone tone = Tone::primary;
        int size = 16;  ///< is the edge length of the drawing, in pixels

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
