#pragma once

#include <chrono>

/// The system's two clocks that nothing sets back. Both count from when the computer was started.
namespace tessel {

[[nodiscard]] std::chrono::nanoseconds timeSinceStart();

/// Returns the time without that in which the computer slept.
[[nodiscard]] std::chrono::nanoseconds timeAwake();

}  // namespace tessel
