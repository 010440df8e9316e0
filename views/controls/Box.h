#pragma once

#include <QVBoxLayout>
#include <QWidget>

#include "views/controls/Style.h"

namespace tessel {

/// A rounded box around other widgets.
class Box : public QWidget {
  public:
    struct Look {
        double radius;
        int padding;  ///< between the box and its content
        QColor (*fill)(const Colors& colors);
        QColor (*stroke)(const Colors& colors);
    };

    explicit Box(const Look& look);

    /// Holds the content, top to bottom.
    [[nodiscard]] QVBoxLayout& content() { return *column; }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    Look look;
    QVBoxLayout* column;
};

}  // namespace tessel
