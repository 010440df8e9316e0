#pragma once

#include "views/controls/TextLabel.h"

namespace tessel {

/// Shows a text on one line and shortens it with an ellipsis when it does not fit. The tool tip then shows
/// the whole text, and screen readers always say all of it.
class ElidedLabel : public TextLabel {
  public:
    ElidedLabel(const TextLook& look, Qt::TextElideMode mode);

    [[nodiscard]] bool isElided() const;
    /// Returns what is painted. An isolate whose end was left out ends at the ellipsis, lest what follows
    /// takes the direction of a right-to-left name.
    [[nodiscard]] QString shownText() const;
    [[nodiscard]] QSize minimumSizeHint() const override;

  protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    Qt::TextElideMode mode;
};

}  // namespace tessel
