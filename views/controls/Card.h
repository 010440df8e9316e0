#pragma once

#include <QPainter>
#include <QString>
#include <QVBoxLayout>
#include <QWidget>

#include "views/controls/Style.h"

namespace tessel {

/// Draws a rounded box around other widgets. Lengths are in pixels.
class Box : public QWidget {
  public:
    struct Look {
        double radius;
        int padding;  ///< between the box and its content
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

/// Frames one group of the window's content, which screen readers announce by its name.
class Card : public Box {
  public:
    explicit Card(const QString& name);

    /// Shows that the card will take what is held over the window.
    void setHighlighted(bool highlight);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    bool isHighlighted = false;
};

/// Lays out a card's symbol and title above its explanation.
[[nodiscard]] QVBoxLayout* cardHeading(const QString& symbol, const QString& title,
                                       const QString& explanation);

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
