#pragma once

#include <QBasicTimer>
#include <QScrollArea>
#include <QScrollBar>

namespace tessel {

/// Shows only a slim handle on whatever is behind it.
class ScrollBar : public QScrollBar {
  public:
    /// Whether the handle hides a moment after its last use.
    enum class Hides { never, whenUnused };

    static constexpr int thickness = 12;  ///< in pixels

    explicit ScrollBar(Qt::Orientation orientation, Hides hides = Hides::never);

    [[nodiscard]] QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void sliderChange(SliderChange change) override;
    void timerEvent(QTimerEvent* event) override;

  private:
    Hides hides;
    QBasicTimer use;  ///< active for a moment after each use
};

/// Scrolls what does not fit into it, with slim handles, on whatever is behind it. It takes no focus and does
/// not follow it, and keys that its content ignores still scroll it.
class ScrollPane : public QScrollArea {
  public:
    explicit ScrollPane(QWidget* content);

    /// Scrolls no further than is needed to show this part of the content with a margin around it.
    void reveal(const QWidget& part, int margin);

  protected:
    bool focusNextPrevChild(bool next) override;
};

}  // namespace tessel
