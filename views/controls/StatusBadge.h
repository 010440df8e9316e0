#pragma once

#include <QWidget>

#include "views/controls/Style.h"

namespace tessel {

class ElidedLabel;
class StatusSign;

/// Shows the live status of the program as a sign and a text in one colour. A text that does not fit is
/// shortened.
class StatusBadge : public QWidget {
  public:
    struct Fields {
        QString text;
        QString announcement;  ///< is what screen readers say, each time that it changes
        Tone tone = Tone::secondary;
        bool isBusy = false;

        bool operator==(const Fields&) const = default;
    };

    StatusBadge();

    void display(const Fields& fields);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    Fields shown;
    StatusSign* sign;
    ElidedLabel* label;
};

}  // namespace tessel
