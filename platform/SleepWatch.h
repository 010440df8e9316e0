#pragma once

#include <time.h>

#include <chrono>

namespace tessel {

/// Returns the system's clock that counts from the start of the computer and is never set back.
[[nodiscard]] clockid_t clockSinceStart();

/// Returns the system's clock that counts so, too, but stands still while the computer sleeps.
[[nodiscard]] clockid_t clockAwake();

/// Notices that the computer has slept since this object was made. May be used on any thread.
class SleepWatch {
  public:
    SleepWatch();

    [[nodiscard]] bool hasSlept() const;

  private:
    std::chrono::nanoseconds mostTimeAsleep;  ///< since the computer was started, at the beginning
};

}  // namespace tessel
