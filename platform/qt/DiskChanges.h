#pragma once

#include <functional>
#include <memory>

#include "platform/Desktop.h"

namespace tessel {

/// Has the event loop call the handler each time a disk or a medium has come or gone, until the result is
/// dropped. The system tells of it: nothing polls, and no disk is read. Where the system can't be asked to,
/// the handler is never called.
[[nodiscard]] std::unique_ptr<TemporaryActivity> watchDisks(std::function<void()> onChange);

}  // namespace tessel
