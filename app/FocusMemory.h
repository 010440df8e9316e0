#pragma once

#include <QPointer>
#include <QWidget>

namespace tessel {

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
