#pragma once

#include <functional>
#include <memory>

#include "platform/Desktop.h"

namespace tessel {

/// Calls the handler from the event loop each time a disk or a medium has come or gone, until the result is
/// destroyed. The system reports the changes: nothing polls, and no disk is read. On a system without such
/// reports the handler is never called.
[[nodiscard]] std::unique_ptr<TemporaryActivity> watchDisks(std::function<void(const DiskChange&)> onChange);

}  // namespace tessel
