#include "platform/SleepWatch.h"

namespace tessel {

clockid_t clockSinceStart() {
    return CLOCK_MONOTONIC_RAW;
}

clockid_t clockAwake() {
    return CLOCK_UPTIME_RAW;
}

}  // namespace tessel
