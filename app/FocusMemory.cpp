#include "app/FocusMemory.h"

namespace tessel {

void FocusMemory::settle(QWidget* focusedBefore) {
    if (focusedBefore && focusedBefore != &window) home = focusedBefore;
    if (!home) return;
    QWidget* const place = isUsable(home) ? home.data() : &window;
    if (window.focusWidget() != place) place->setFocus(Qt::OtherFocusReason);
}

bool FocusMemory::isUsable(const QWidget* control) const {
    return control->isEnabled() && control->isVisibleTo(&window);
}

}  // namespace tessel
