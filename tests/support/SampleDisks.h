#pragma once

#include <string>

#include "model/SDWholeDisk.h"

namespace tessel {

/// Returns the record of an SD card that may be chosen.
inline SDWholeDisk sampleCard(const std::string& id, const std::string& mediaName = "SDXC Reader",
                              uint64_t sizeBytes = 32'000'000'000) {
    return {.id = id,
            .mediaName = mediaName,
            .sizeBytes = sizeBytes,
            .busProtocol = "Secure Digital",
            .deviceLocation = "External",
            .partitionScheme = "FDisk_partition_scheme",
            .isInternal = false,
            .isWhole = true,
            .isRemovable = true,
            .isEjectable = true,
            .isWritable = true,
            .isPhysical = true,
            .hasDetailedInfo = true};
}

}  // namespace tessel
