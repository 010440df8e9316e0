#pragma once

#include <QSize>
#include <QSplitter>

class QScreen;

namespace tessel {

class ScrollPane;

/// The sizes of the window's content, in device-independent pixels.
struct WindowSizes {
    QSize usual;
    QSize minimum;
    QSize largest;  ///< that fits on the screen

    /// What a screen offers to a window and its frame.
    struct Room {
        QSize size;
        bool isKnown = true;  ///< false where the system does not say how much the desktop's panels take

        [[nodiscard]] static Room on(const QScreen& screen);
    };

    /// Returns the window's sizes on a screen with that much room, at the present font. They are smaller than
    /// designed only where the room does not suffice, or may not.
    [[nodiscard]] static WindowSizes fitting(const Room& room);

    bool operator==(const WindowSizes&) const = default;
};

/// Shows two columns of cards side by side, or one above the other where they are too narrow for that. Each
/// scrolls when it is too small for its cards, and keeps the control that has the keyboard focus in view.
class Panes : public QSplitter {
  public:
    Panes(QWidget* left, QWidget* right);

  protected:
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    ScrollPane* makePane(QWidget* content);
    void arrange();
    void revealFocus();

    ScrollPane* leftPane;
    ScrollPane* rightPane;
};

}  // namespace tessel
