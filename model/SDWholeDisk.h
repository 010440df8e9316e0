#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "model/SDDiskPartition.h"

namespace tessel {

/// Describes one whole disk as the operating system reported it at one moment. It is a plain value: it stays
/// true to what was read and never looks again.
struct SDWholeDisk {
    std::string id;                           ///< is a device identifier such as "disk4", without "/dev/"
    std::string mediaName;                    ///< is kept as reported
    uint64_t sizeBytes = 0;                   ///< is 0 when unknown
    std::string busProtocol;                  ///< is kept as reported: "USB", "Secure Digital", …
    std::string deviceLocation;               ///< is kept as reported: "Internal", "External" or other words
    std::string partitionScheme;              ///< may be empty
    std::vector<SDDiskPartition> partitions;  ///< are ordered by identifier
    std::optional<bool> isInternal;           ///< is absent when nothing could be determined
    bool isWhole = false;
    bool isRemovable = false;
    bool isEjectable = false;
    bool isWritable = false;
    bool isPhysical = false;       ///< is false for virtual, synthesized and disk-image devices
    bool hasDetailedInfo = false;  ///< is false for a record built from the disk list alone
    /// Is what the system itself calls the disk, such as "/dev/mmcblk0", where that is not made of the
    /// identifier. It tells nothing about the kind of disk, nor which one it is.
    std::optional<std::string> systemName = {};
    /// Says in sentences why nothing may be written, if the system tells.
    std::optional<std::string> protectionReason = {};

    bool operator==(const SDWholeDisk&) const = default;

    std::string displaySummary() const;  ///< joins media name, size and identifier
    std::string locationText() const;
    std::string partitionSchemeText() const;
    std::string capabilitySummary() const;
    std::string partitionCountText() const;
};

/// What the disk list alone says about one whole disk.
struct DiskLayout {
    std::string partitionScheme;              ///< may be empty
    std::vector<SDDiskPartition> partitions;  ///< ordered by identifier
    std::optional<uint64_t> sizeBytes;
    std::optional<bool> isInternal;

    bool operator==(const DiskLayout&) const = default;
};

/// Returns the size of a disk or partition in words, as in "31.9 GB"; 0 bytes are an "Unknown size".
[[nodiscard]] std::string sizeOrUnknown(uint64_t bytes);

/// Returns the path of a disk's device, such as "/dev/disk4".
[[nodiscard]] std::string devicePath(const std::string& identifier);

/// Returns the path of a disk's raw device, such as "/dev/rdisk4".
[[nodiscard]] std::string rawDevicePath(const std::string& identifier);

}  // namespace tessel
