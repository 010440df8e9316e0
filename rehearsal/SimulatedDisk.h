#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "foundation/PropertyList.h"

namespace tessel {

/// A partition of a simulated disk, or a volume inside one.
struct SimulatedPartition {
    std::string identifier;
    std::string content = {};  ///< omitted when empty, as are the name and the mount point
    std::string volumeName = {};
    uint64_t sizeBytes = 0;
    std::string mountPoint = {};
    std::vector<SimulatedPartition> volumes = {};
};

/// A whole disk as the disk utility describes it; by default a card in a USB reader.
struct SimulatedDisk {
    enum class Medium {
        none,       ///< the disk is described but never opened
        card,       ///< a loop device where the user may attach one, otherwise a sparse file
        plainFile,  ///< a sparse file
    };

    std::string identifier;
    std::string mediaName;
    uint64_t sizeBytes = 0;  ///< in bytes, also of the medium
    std::string busProtocol = "USB";
    std::string deviceLocation = "External";
    std::string partitionScheme = "FDisk_partition_scheme";
    std::vector<SimulatedPartition> partitions = {};
    bool isInternal = false;
    bool isRemovable = true;
    bool isEjectable = true;
    bool isWritable = true;
    bool isPhysical = true;
    Medium medium = Medium::card;
    uint32_t blockSize = 512;  ///< of a logical block, in bytes; a sparse file ignores it
};

/// Returns the disk's details under the keys of the disk utility.
[[nodiscard]] PropertyList::Dictionary detailsOf(const SimulatedDisk& disk);

}  // namespace tessel
