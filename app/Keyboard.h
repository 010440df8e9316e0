#pragma once

#include <QAbstractButton>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QKeySequence>
#include <QObject>
#include <QPointer>
#include <QWidget>

namespace tessel {

/// Returns the usual key for an action, or the desktop's own where that is another one.
[[nodiscard]] QKeySequence keyFor(QKeySequence::StandardKey action, const QKeySequence& expected);

/// Keeps keys and clicks from pressing a button that the user may not mean. A key that is held down presses
/// none and is no shortcut, nor does a key press within a second of an alert's appearing or of the focus
/// coming back to a button by itself. The second click of a double click presses nothing in an alert that the
/// first one has opened, nor what lay below an alert that it has closed.
class PressGuard : public QObject {
  public:
    /// Watches the whole application for as long as this exists.
    explicit PressGuard(QObject* parent);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void noteAppearance(QObject* watched, const QEvent& event);
    [[nodiscard]] bool isUnmeantKey(const QAbstractButton& button, const QKeyEvent& key) const;
    [[nodiscard]] bool isUnmeantClick(const QAbstractButton& button, QEvent::Type click) const;
    [[nodiscard]] bool hasJustAppeared(const QWidget& button, int milliseconds) const;

    QPointer<QWidget> appeared;  ///< the alert or the button that came under the user's fingers last
    QElapsedTimer sinceThen;
    QPointer<QWidget> clickedWindow;  ///< of the last mouse press
};

/// Keeps the keyboard focus where the user left it. While that control is disabled or hidden, the focus rests
/// on the window, so that no key presses anything; Qt would move it on to whatever comes next, such as the
/// stop button.
class FocusMemory {
  public:
    /// The window must outlive this.
    explicit FocusMemory(QWidget& rememberedWindow) : window(rememberedWindow) {}

    /// Puts the focus right after controls may have changed. Takes the control that had it before, or null.
    void settle(QWidget* focusedBefore);

  private:
    [[nodiscard]] bool isUsable(const QWidget* control) const;

    QWidget& window;
    QPointer<QWidget> home;  ///< the control to which the focus returns
};

}  // namespace tessel
