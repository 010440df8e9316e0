#pragma once

namespace tessel {

/// How a utility ends.
enum ExitStatus : int {
    success = 0,
    failure = 1,
    wrongUsage = 64,
};

}  // namespace tessel
