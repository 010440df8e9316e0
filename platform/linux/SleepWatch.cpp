#include "platform/SleepWatch.h"

namespace tessel {

clockid_t clockSinceStart() {
    return CLOCK_BOOTTIME;
}

clockid_t clockAwake() {
    return CLOCK_MONOTONIC;
}

}  // namespace tessel
