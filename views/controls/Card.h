#pragma once

#include <QVBoxLayout>
#include <QWidget>

namespace tessel {

/// A rounded box for one group of the window's content.
class Card : public QWidget {
  public:
    Card();

    /// Where the content goes, top to bottom.
    QVBoxLayout& content() { return *column; }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QVBoxLayout* column;
};

}  // namespace tessel
