#pragma once

#include <QAccessible>

namespace tessel {

/// Has screen readers ask an `Interface`, made for the widget, about every widget of a class.
template <typename Widget, typename Interface>
void presentToScreenReaders() {
    QAccessible::installFactory([](const QString&, QObject* object) -> QAccessibleInterface* {
        auto* widget = dynamic_cast<Widget*>(object);
        return widget ? new Interface(*widget) : nullptr;
    });
}

}  // namespace tessel
