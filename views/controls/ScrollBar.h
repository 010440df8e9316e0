#pragma once

#include <QBasicTimer>
#include <QScrollBar>

namespace tessel {

/// Shows only a slim handle on whatever is behind it.
class ScrollBar : public QScrollBar {
  public:
    /// Tells whether the handle hides a moment after its last use.
    enum class Hides { never, whenUnused };

    explicit ScrollBar(Qt::Orientation orientation, Hides hides = Hides::never);

    [[nodiscard]] QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void sliderChange(SliderChange change) override;
    void timerEvent(QTimerEvent* event) override;

  private:
    Hides hides;
    QBasicTimer use;  ///< runs on for a moment after each use
};

}  // namespace tessel
