#pragma once

#include <functional>
#include <memory>

#include "platform/Desktop.h"

namespace tessel {

/// Calls the function on the main thread after each polite request to terminate (SIGTERM, SIGINT, SIGHUP)
/// until the result is destroyed; requests that arrive together may count as one. Without such a watch they
/// end the program at once. A request that is ignored, as nohup(1) arranges, stays so. There may be one watch
/// at a time. Returns nothing if no pipe can be made.
[[nodiscard]] std::unique_ptr<TemporaryActivity> watchTerminationRequests(std::function<void()> onRequest);

}  // namespace tessel
