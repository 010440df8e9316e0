#include "app/FocusMemory.h"

namespace tessel {

void FocusMemory::settle(QWidget* focusedBefore, bool isBusy) {
    const bool isUrgent = isUsable(&urgentControl);
    const bool becameUrgent = isUrgent && !wasUrgent;
    wasUrgent = isUrgent;
    // A person who has moved the focus since then wants it there.
    if (focusedBefore != place) isAway = false;
    if (!isAway) {
        if (!becameUrgent && (!focusedBefore || isUsable(focusedBefore))) return;
        isAway = true;
        home = focusedBefore;
    }

    if (isUrgent) {
        place = &urgentControl;
    } else if (isUsable(home)) {
        place = home;
    } else {
        place = isBusy || !home ? &window : usableBefore(home);
    }
    isAway = isBusy;
    if (window.focusWidget() != place) place->setFocus(Qt::OtherFocusReason);
}

bool FocusMemory::isUsable(const QWidget* control) const {
    return control && control->isEnabled() && control->isVisibleTo(&window);
}

QWidget* FocusMemory::usableBefore(QWidget* control) const {
    do {
        control = control->previousInFocusChain();
    } while (control != &window && !(isUsable(control) && control->focusPolicy() & Qt::TabFocus));
    return control;
}

}  // namespace tessel
