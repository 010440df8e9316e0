#pragma once

#include <chrono>

namespace tessel {

/// Notices that the computer has slept since this object was made. May be used on any thread.
class SleepWatch {
  public:
    SleepWatch();

    [[nodiscard]] bool hasSlept() const;

  private:
    std::chrono::nanoseconds mostTimeAsleep;  ///< since the computer was started, at the beginning
};

}  // namespace tessel
