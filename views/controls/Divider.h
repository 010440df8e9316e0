#pragma once

#include <QPainter>
#include <QWidget>

#include "views/controls/Style.h"

namespace tessel {

/// Draws a fine horizontal line.
class Divider : public QWidget {
  public:
    Divider() { setFixedHeight(1); }

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter(this).fillRect(rect(), withOpacity(currentColors().primary, 0.1));
    }
};

}  // namespace tessel
