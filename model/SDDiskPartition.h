#pragma once

#include <cstdint>
#include <string>

namespace tessel {

/// One partition or volume of a disk.
struct SDDiskPartition {
    std::string id;          ///< device identifier such as "disk4s1"
    std::string content;     ///< partition type, file-system name or volume role; may be empty
    std::string volumeName;  ///< may be empty
    uint64_t sizeBytes = 0;  ///< 0 when unknown
    std::string mountPoint;  ///< empty when not mounted

    bool operator==(const SDDiskPartition&) const = default;

    /// The volume name, else the content, else "Unnamed Partition".
    std::string displayName() const;

    /// Content (unless it repeats the name) and mount point, or "Partition" when there is neither.
    std::string detailText() const;
};

}  // namespace tessel
