#include "views/accessibility/AccessibleControl.h"

#include <QApplication>
#include <QPushButton>

namespace tessel {

QStringList AccessibleControl::actionNames() const {
    QStringList names = QAccessibleWidget::actionNames();
    if (canBeClicked()) names.prepend(clickAction());
    return names;
}

void AccessibleControl::doAction(const QString& action) {
    if (action != clickAction()) return QAccessibleWidget::doAction(action);
    // The screen reader waits for the answer, and a click may open a dialog that does not return.
    const QAccessible::Id id = QAccessible::uniqueId(this);
    QMetaObject::invokeMethod(
        widget(),
        [id] {
            auto* self = static_cast<AccessibleControl*>(QAccessible::accessibleInterface(id));
            if (self && self->canBeClicked()) self->click();
        },
        Qt::QueuedConnection);
}

QString AccessibleControl::clickAction() const {
    // Some systems ask for the action that is usual for the role, and for no other.
    const bool isToggle = role() == QAccessible::CheckBox || role() == QAccessible::RadioButton;
    return isToggle ? toggleAction() : pressAction();
}

bool AccessibleControl::canBeClicked() const {
    const QWidget* dialog = QApplication::activeModalWidget();
    const bool isBlocked = dialog && dialog != widget()->window();
    return widget()->isEnabled() && widget()->isVisible() && !isBlocked;
}

AccessibleButton::AccessibleButton(QAbstractButton& button, QAccessible::Role role) :
    AccessibleControl(&button, role),
    button(button) {}

QString AccessibleButton::text(QAccessible::Text which) const {
    const QString given = AccessibleControl::text(which);
    return which == QAccessible::Name && given.isEmpty() ? button.text() : given;
}

QAccessible::State AccessibleButton::state() const {
    QAccessible::State state = AccessibleControl::state();
    state.pressed = button.isDown();
    state.checkable = button.isCheckable();
    state.checked = button.isChecked();
    if (const auto* pushButton = qobject_cast<const QPushButton*>(&button))
        state.defaultButton = pushButton->isDefault();
    return state;
}

}  // namespace tessel
