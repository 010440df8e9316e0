#pragma once

#include <chrono>

namespace tessel {

/// Returns the time since the computer was started, by a clock that is never set back.
[[nodiscard]] std::chrono::nanoseconds timeSinceStart();

/// Returns the time without that in which the computer slept.
[[nodiscard]] std::chrono::nanoseconds timeAwake();

/// Notices that the computer has slept since this object was made. May be used on any thread.
class SleepWatch {
  public:
    SleepWatch();

    [[nodiscard]] bool hasSlept() const;

  private:
    std::chrono::nanoseconds mostTimeAsleep;  ///< since the computer was started, at the beginning
};

}  // namespace tessel
