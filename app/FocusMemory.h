#pragma once

#include <QPointer>
#include <QWidget>

namespace tessel {

/// Keeps the keyboard focus where the person left it while controls are disabled, hidden and shown again: it
/// rests on the window meanwhile, and then returns. Without this it would move on to whatever comes next.
class FocusMemory {
  public:
    /// While the urgent control can be used, it has the focus. The window and the control must outlive this.
    FocusMemory(QWidget& window, QWidget& urgentControl) : window(window), urgentControl(urgentControl) {}

    /// Puts the focus right after controls may have changed. Takes the control that had it before, or null,
    /// and whether more of them will be enabled again soon.
    void settle(QWidget* focusedBefore, bool isBusy);

  private:
    [[nodiscard]] bool isUsable(const QWidget* control) const;
    [[nodiscard]] QWidget* usableBefore(QWidget* control) const;

    QWidget& window;
    QWidget& urgentControl;
    bool wasUrgent = false;
    bool isAway = false;
    QPointer<QWidget> home;   ///< is where the person left the focus that is away
    QPointer<QWidget> place;  ///< is where it is meanwhile
};

}  // namespace tessel
