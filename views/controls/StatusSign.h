#pragma once

#include <QBasicTimer>
#include <QWidget>

#include "views/controls/Style.h"

namespace tessel {

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
    void turnWhileSeen();

    Tone tone = Tone::secondary;
    bool isBusy = false;
    int angle = 90;  ///< is where the arc begins, in degrees
    QBasicTimer turn;
};

}  // namespace tessel
