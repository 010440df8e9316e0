#include "platform/SleepWatch.h"

namespace tessel {

// The two clocks can't be read at once. Reading them in the right order errs on the side of less sleep.

SleepWatch::SleepWatch() {
    const auto awake = timeAwake();
    mostTimeAsleep = timeSinceStart() - awake;
}

bool SleepWatch::hasSlept() const {
    const auto sinceStart = timeSinceStart();
    const auto leastTimeAsleep = sinceStart - timeAwake();
    return leastTimeAsleep > mostTimeAsleep;
}

}  // namespace tessel
