#pragma once

#include <QBasicTimer>
#include <QWidget>

#include "views/controls/Style.h"

namespace tessel {

class ElidedLabel;

/// The sign before a status: a turning arc while busy, otherwise a dot.
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
    void turnWhileSeen();

    Tone tone = Tone::secondary;
    bool isBusy = false;
    int angle = 90;  ///< of the arc's beginning, in degrees
    QBasicTimer turn;
};

/// The live status of the program: sign and text in one colour. A text that does not fit is shortened.
class StatusBadge : public QWidget {
  public:
    struct Fields {
        QString text;
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
