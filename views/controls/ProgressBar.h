#pragma once

#include <QProgressBar>

namespace tessel {

/// A slim bar. Screen readers hear it as a percentage; give it an accessible name.
class ProgressBar : public QProgressBar {
  public:
    ProgressBar();

    /// 0 to 1; values outside count as the nearer end.
    void setFraction(double fraction);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    double fraction = 0;
};

}  // namespace tessel
