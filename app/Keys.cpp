#include "app/Keys.h"

#include <QList>

namespace tessel {

QKeySequence keyFor(QKeySequence::StandardKey action, const QKeySequence& expected) {
    const auto desktopsOwn = QKeySequence::keyBindings(action);
    return desktopsOwn.isEmpty() || desktopsOwn.contains(expected) ? expected : desktopsOwn.front();
}

}  // namespace tessel
