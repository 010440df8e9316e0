#include "app/Keyboard.h"

#include <QApplication>
#include <QDialog>
#include <QFocusEvent>
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

PressGuard::PressGuard(QObject* parent) : QObject(parent) {
    qApp->installEventFilter(this);
}

bool PressGuard::eventFilter(QObject* watched, QEvent* event) {
    const auto* button = qobject_cast<QAbstractButton*>(watched);
    switch (event->type()) {
        case QEvent::Show:
        case QEvent::FocusIn:
            noteAppearance(watched, *event);
            return false;
        case QEvent::ShortcutOverride:
            if (!static_cast<QKeyEvent*>(event)->isAutoRepeat()) return false;
            event->accept();  // has Qt look for no shortcut
            return true;
        case QEvent::KeyPress:
            return button && isUnmeantKey(*button, *static_cast<QKeyEvent*>(event));
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick: {
            const bool isUnmeant = button && isUnmeantClick(*button, event->type());
            if (const auto* widget = qobject_cast<QWidget*>(watched)) clickedWindow = widget->window();
            return isUnmeant;
        }
        default:
            return false;
    }
}

bool PressGuard::isUnmeantKey(const QAbstractButton& button, const QKeyEvent& key) const {
    return isPressingKey(key) && (key.isAutoRepeat() || hasJustAppeared(button, timeToNotice));
}

bool PressGuard::isUnmeantClick(const QAbstractButton& button, QEvent::Type click) const {
    if (click == QEvent::MouseButtonDblClick && clickedWindow != button.window()) return true;
    return qobject_cast<QDialog*>(appeared) && hasJustAppeared(button, QApplication::doubleClickInterval());
}

void PressGuard::noteAppearance(QObject* watched, const QEvent& event) {
    const bool isAlert = event.type() == QEvent::Show && qobject_cast<QDialog*>(watched);
    const bool hasFocusAgain = event.type() == QEvent::FocusIn &&
                               static_cast<const QFocusEvent&>(event).reason() == Qt::OtherFocusReason;
    if (!isAlert && !hasFocusAgain) return;
    appeared = qobject_cast<QWidget*>(watched);
    sinceThen.start();
}

bool PressGuard::hasJustAppeared(const QWidget& button, int milliseconds) const {
    return appeared && (appeared == &button || appeared->isAncestorOf(&button)) &&
           sinceThen.elapsed() < milliseconds;
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
