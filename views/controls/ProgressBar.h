#pragma once

#include <QProgressBar>

namespace tessel {

/// Returns a fraction in whole per cent, rounded half away from zero.
[[nodiscard]] int percentage(double fraction);

/// Shows a fraction as a slim bar. Screen readers announce it as a percentage; give it an accessible name.
class ProgressBar : public QProgressBar {
  public:
    ProgressBar();

    /// Takes 0 to 1; a value outside counts as the nearer end.
    void setFraction(double fraction);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    double fraction = 0;
};

}  // namespace tessel
