#pragma once

#include <QCheckBox>

namespace tessel {

/// Turns something on or off at once, by a click, Space or Return. It shows a small track with a knob, then
/// its text.
class Switch : public QCheckBox {
  public:
    enum class Size { small, regular };

    explicit Switch(const QString& text, Size size = Size::regular);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    [[nodiscard]] bool hitButton(const QPoint& position) const override { return rect().contains(position); }
    void paintEvent(QPaintEvent* event) override;

  private:
    [[nodiscard]] QRect trackBounds() const;
    void paintTrack(QPainter& painter) const;

    Size size;
};

}  // namespace tessel
