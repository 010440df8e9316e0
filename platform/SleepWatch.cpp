#include "platform/SleepWatch.h"

namespace tessel {

namespace {

std::chrono::nanoseconds timeOf(clockid_t clock) {
    timespec time{};
    clock_gettime(clock, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

}  // namespace

// The two clocks can't be read at once. Reading them in the right order errs on the side of less sleep.

SleepWatch::SleepWatch() {
    const auto awake = timeOf(clockAwake());
    mostTimeAsleep = timeOf(clockSinceStart()) - awake;
}

bool SleepWatch::hasSlept() const {
    const auto sinceStart = timeOf(clockSinceStart());
    const auto leastTimeAsleep = sinceStart - timeOf(clockAwake());
    return leastTimeAsleep > mostTimeAsleep;
}

}  // namespace tessel
