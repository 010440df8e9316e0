#pragma once

#include <time.h>

#include <chrono>

namespace tessel {

/// Returns the system's clock that counts from the start of the computer and is never set back.
[[nodiscard]] clockid_t clockSinceStart();

/// Returns the clock that counts likewise but stands still while the computer sleeps.
[[nodiscard]] clockid_t clockAwake();

/// Detects that the computer has slept since this object was made. May be used on any thread.
class SleepWatch {
  public:
    SleepWatch();

    [[nodiscard]] bool hasSlept() const;

  private:
    std::chrono::nanoseconds mostTimeAsleep;  ///< the time asleep until construction, at most
};

}  // namespace tessel
