#include "views/accessibility/Accessibility.h"

#include <QApplication>
#include <QPushButton>

namespace tessel {

void announce(QWidget& notification, [[maybe_unused]] const QString& text) {
#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
    QAccessibleAnnouncementEvent event(&notification, text);
#else
    QAccessibleEvent event(&notification, QAccessible::ObjectShow);
#endif
    QAccessible::updateAccessibility(&event);
}

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

AccessibleValue::AccessibleValue(QLineEdit& line) :
    QAccessibleWidget(&line, QAccessible::EditableText),
    line(line) {}

void* AccessibleValue::interface_cast(QAccessible::InterfaceType type) {
    if (type == QAccessible::TextInterface) return static_cast<QAccessibleTextInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
}

QAccessible::State AccessibleValue::state() const {
    QAccessible::State state = QAccessibleWidget::state();
    state.readOnly = true;
    state.selectableText = true;
    return state;
}

void AccessibleValue::selection(int index, int* start, int* end) const {
    const bool isThere = index == 0 && line.hasSelectedText();
    *start = isThere ? line.selectionStart() : 0;
    *end = isThere ? line.selectionEnd() : 0;
}

int AccessibleValue::selectionCount() const {
    return line.hasSelectedText() ? 1 : 0;
}

void AccessibleValue::addSelection(int start, int end) {
    setSelection(0, start, end);
}

void AccessibleValue::removeSelection(int index) {
    if (index == 0) line.deselect();
}

void AccessibleValue::setSelection(int index, int start, int end) {
    if (index == 0) line.setSelection(start, end - start);
}

int AccessibleValue::cursorPosition() const {
    return line.cursorPosition();
}

void AccessibleValue::setCursorPosition(int position) {
    line.setCursorPosition(position);
}

QString AccessibleValue::text(int start, int end) const {
    return line.text().mid(start, end - start);
}

QString AccessibleValue::text(QAccessible::Text which) const {
    return which == QAccessible::Value ? line.text() : QAccessibleWidget::text(which);
}

int AccessibleValue::characterCount() const {
    return static_cast<int>(line.text().size());
}

QRect AccessibleValue::characterRect(int offset) const {
    const QFontMetrics metrics = line.fontMetrics();
    const int left = metrics.horizontalAdvance(line.text().left(offset));
    const int width = metrics.horizontalAdvance(line.text().mid(offset, 1));
    return {line.mapToGlobal(QPoint(left, 0)), QSize(width, line.height())};
}

int AccessibleValue::offsetAtPoint(const QPoint& point) const {
    return line.cursorPositionAt(line.mapFromGlobal(point));
}

void AccessibleValue::scrollToSubstring(int start, int) {
    line.setCursorPosition(start);
}

QString AccessibleValue::attributes(int, int* start, int* end) const {
    *start = 0;
    *end = characterCount();
    return {};
}

}  // namespace tessel
