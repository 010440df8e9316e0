#pragma once

#include <string>
#include <vector>

#include "model/SDWholeDisk.h"
#include "viewmodel/TesselOperationState.h"

namespace tessel {

/// A summary of the disks that a scan found: the state to show, then the lines to log.
struct ScanSummary {
    TesselOperationState state;
    std::vector<std::string> messages;

    static ScanSummary of(const std::vector<SDWholeDisk>& disks);
};

}  // namespace tessel
