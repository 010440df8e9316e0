#include "platform/SleepWatch.h"

#include <time.h>

namespace tessel {

namespace {

std::chrono::nanoseconds timeOf(clockid_t clock) {
    timespec time{};
    clock_gettime(clock, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

}  // namespace

std::chrono::nanoseconds timeSinceStart() {
    return timeOf(CLOCK_MONOTONIC_RAW);
}

std::chrono::nanoseconds timeAwake() {
    return timeOf(CLOCK_UPTIME_RAW);
}

}  // namespace tessel
