#include "views/accessibility/AccessibleValue.h"

namespace tessel {

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
