#pragma once

#include <QAccessible>

namespace tessel {

/// Lets screen readers learn about each `Widget` from an `Interface` that is made for it.
template <typename Widget, typename Interface>
void presentToScreenReaders() {
    QAccessible::installFactory([](const QString&, QObject* object) -> QAccessibleInterface* {
        auto* widget = dynamic_cast<Widget*>(object);
        return widget ? new Interface(*widget) : nullptr;
    });
}

}  // namespace tessel
