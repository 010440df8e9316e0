#pragma once

#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

#include <atomic>

namespace tessel {

/// The time that the computer has slept so far, in seconds. One source file of a test program may include
/// this.
inline std::atomic<time_t> secondsAsleep = 0;

}  // namespace tessel

/// Replaces the system's call in the test program.
extern "C" int clock_gettime(clockid_t clock, timespec* time) noexcept {
    const auto result = static_cast<int>(syscall(SYS_clock_gettime, clock, time));
    if (clock == CLOCK_BOOTTIME) time->tv_sec += tessel::secondsAsleep;
    return result;
}
