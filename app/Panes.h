#pragma once

#include <QSplitter>

namespace tessel {

class ScrollPane;

/// Shows two columns of cards side by side. Each scrolls when the window is too small for it, and keeps the
/// control that has the keyboard focus in view.
class Panes : public QSplitter {
  public:
    Panes(QWidget* left, QWidget* right);

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    ScrollPane* makePane(QWidget* content);
    void revealFocus();

    ScrollPane* leftPane;
};

}  // namespace tessel
