#pragma once

#include <QVBoxLayout>
#include <QWidget>

#include "views/controls/Style.h"

namespace tessel {

/// Draws a rounded box around other widgets. Lengths are in pixels.
class Box : public QWidget {
  public:
    struct Look {
        double radius;
        int padding;  ///< lies between the box and its content
        QColor (*fill)(const Colors& colors);
        QColor (*stroke)(const Colors& colors);
    };

    explicit Box(const Look& look);

    /// Takes the content, laid out top to bottom.
    [[nodiscard]] QVBoxLayout& content() { return *column; }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    Look look;
    QVBoxLayout* column;
};

}  // namespace tessel
