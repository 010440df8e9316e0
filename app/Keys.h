#pragma once

#include <QKeySequence>

namespace tessel {

/// Returns the key that everybody expects for an action, or the desktop's own where that is another one.
[[nodiscard]] QKeySequence keyFor(QKeySequence::StandardKey action, const QKeySequence& expected);

}  // namespace tessel
