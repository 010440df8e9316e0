#include "app/Keyboard.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QList>

#include "views/controls/Painting.h"

namespace tessel {

namespace {

constexpr int timeToNotice = 1000;  // in milliseconds

}  // namespace

QKeySequence keyFor(QKeySequence::StandardKey action, const QKeySequence& expected) {
    const auto desktopsOwn = QKeySequence::keyBindings(action);
    return desktopsOwn.isEmpty() || desktopsOwn.contains(expected) ? expected : desktopsOwn.front();
}

KeyGuard::KeyGuard(QObject* parent) : QObject(parent) {
    qApp->installEventFilter(this);
}

bool KeyGuard::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Show || event->type() == QEvent::FocusIn) noteAppearance(watched, *event);
    if (event->type() == QEvent::ShortcutOverride && static_cast<QKeyEvent*>(event)->isAutoRepeat()) {
        event->accept();  // has Qt look for no shortcut
        return true;
    }
    if (event->type() != QEvent::KeyPress) return false;
    const auto& key = *static_cast<QKeyEvent*>(event);
    const auto* button = qobject_cast<QAbstractButton*>(watched);
    return button && isPressingKey(key) && (key.isAutoRepeat() || isUnexpected(*button));
}

void KeyGuard::noteAppearance(QObject* watched, const QEvent& event) {
    const bool isAlert = event.type() == QEvent::Show && qobject_cast<QDialog*>(watched);
    const bool hasFocusAgain = event.type() == QEvent::FocusIn &&
                               static_cast<const QFocusEvent&>(event).reason() == Qt::OtherFocusReason;
    if (!isAlert && !hasFocusAgain) return;
    appeared = qobject_cast<QWidget*>(watched);
    sinceThen.start();
}

bool KeyGuard::isUnexpected(const QWidget& button) const {
    return appeared && (appeared == &button || appeared->isAncestorOf(&button)) &&
           sinceThen.elapsed() < timeToNotice;
}

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
