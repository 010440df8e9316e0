#pragma once

#include <string>
#include <vector>

#include "model/SDWholeDisk.h"
#include "viewmodel/TesselOperationState.h"

namespace tessel {

/// What is said of the disks that a scan found: the state, then the lines of the log.
struct ScanSummary {
    TesselOperationState state;
    std::vector<std::string> messages;

    static ScanSummary of(const std::vector<SDWholeDisk>& disks);
};

}  // namespace tessel
