#pragma once

#include <QScrollBar>

namespace tessel {

/// Shows only a slim handle on whatever is behind it.
class ScrollBar : public QScrollBar {
  public:
    explicit ScrollBar(Qt::Orientation orientation);

    [[nodiscard]] QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace tessel
