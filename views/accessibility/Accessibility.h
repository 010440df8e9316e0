#pragma once

#include <QAccessibleWidget>
#include <QWidget>

namespace tessel {

/// Lets screen readers learn about each `Widget` from an `Interface` that is made for it. Call it first in
/// the constructor of the widget, before it has a text or anything else to tell: from then on it is presented
/// as what it was at that moment.
template <typename Widget, typename Interface>
void presentToScreenReaders() {
    QAccessible::installFactory([](const QString&, QObject* object) -> QAccessibleInterface* {
        auto* widget = dynamic_cast<Widget*>(object);
        return widget ? new Interface(*widget) : nullptr;
    });
}

/// Tells screen readers what each `Widget` is. Its name is the accessible one, or the title of a window.
template <typename Widget, QAccessible::Role itsRole>
void presentToScreenReadersAs() {
    struct Interface : QAccessibleWidget {
        explicit Interface(Widget& widget) : QAccessibleWidget(&widget, itsRole) {}
    };
    presentToScreenReaders<Widget, Interface>();
}

/// Has screen readers say the text at once, whatever has the focus. The widget shows it and is presented as a
/// notification, which older ones say when it appears.
void announce(QWidget& notification, const QString& text);

}  // namespace tessel
