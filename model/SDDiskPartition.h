#pragma once

#include <cstdint>
#include <string>

namespace tessel {

/// One partition or volume of a disk.
struct SDDiskPartition {
    std::string id;          ///< a device identifier such as "disk4s1"
    std::string content;     ///< a partition type, file-system name or volume role; may be empty
    std::string volumeName;  ///< may be empty
    uint64_t sizeBytes = 0;  ///< 0 when unknown
    std::string mountPoint;  ///< empty when not mounted

    bool operator==(const SDDiskPartition&) const = default;

    /// Returns the volume name, else the content, else "Unnamed Partition".
    std::string displayName() const;

    /// Returns the content (unless it repeats the name) and the mount point, or "Partition" if there is
    /// neither.
    std::string detailText() const;
};

}  // namespace tessel
