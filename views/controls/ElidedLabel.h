#pragma once

#include "views/controls/TextLabel.h"

namespace tessel {

/// A text of one line that is shortened with an ellipsis when it does not fit. The whole text is then its
/// tool tip, and always what screen readers say.
class ElidedLabel : public TextLabel {
  public:
    ElidedLabel(const TextLook& look, Qt::TextElideMode mode);

    [[nodiscard]] bool isElided() const;
    [[nodiscard]] QSize minimumSizeHint() const override;

  protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    Qt::TextElideMode mode;
};

}  // namespace tessel
