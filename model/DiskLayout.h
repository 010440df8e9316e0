#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "model/SDDiskPartition.h"

namespace tessel {

/// What the disk list alone says about one whole disk.
struct DiskLayout {
    std::string partitionScheme;              ///< may be empty
    std::vector<SDDiskPartition> partitions;  ///< are ordered by identifier
    std::optional<uint64_t> sizeBytes;
    std::optional<bool> isInternal;

    bool operator==(const DiskLayout&) const = default;
};

}  // namespace tessel
