#pragma once

#include <QBasicTimer>
#include <QWidget>

#include "views/controls/Style.h"

namespace tessel {

class ElidedLabel;

/// Stands before a status: it shows a turning arc while the program is busy, otherwise a dot.
class StatusSign : public QWidget {
  public:
    StatusSign();

    void display(Tone newTone, bool busy);

  protected:
    void hideEvent(QHideEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

  private:
    void fitSize();
    void turnWhileSeen();

    Tone tone = Tone::secondary;
    bool isBusy = false;
    int angle = 90;  ///< where the arc begins, in degrees
    QBasicTimer turn;
};

/// Shows the live status of the program as a sign and a text in one colour. A text that does not fit is
/// shortened.
class StatusBadge : public QWidget {
  public:
    struct Fields {
        QString text;
        QString announcement;  ///< the words of screen readers each time that it changes
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
