#pragma once

#include <QScrollBar>

namespace tessel {

/// Scrolls vertically, and shows only a slim handle on whatever is behind it.
class ScrollBar : public QScrollBar {
  public:
    ScrollBar();

    [[nodiscard]] QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace tessel
