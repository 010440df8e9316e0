#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "model/SDDiskPartition.h"

namespace tessel {

/// One whole disk as the operating system reported it at one moment. It is a plain value and is never
/// updated.
struct SDWholeDisk {
    std::string id;                           ///< a device identifier such as "disk4", without "/dev/"
    std::string mediaName;                    ///< as reported
    uint64_t sizeBytes = 0;                   ///< 0 when unknown
    std::string busProtocol;                  ///< as reported: "USB", "Secure Digital", …
    std::string deviceLocation;               ///< as reported: "Internal", "External" or other words
    std::string partitionScheme;              ///< may be empty
    std::vector<SDDiskPartition> partitions;  ///< ordered by identifier
    std::optional<bool> isInternal;           ///< absent when nothing could be determined
    bool isWhole = false;
    bool isRemovable = false;
    bool isEjectable = false;
    bool isWritable = false;
    bool isPhysical = false;       ///< false for virtual, synthesized and disk-image devices
    bool hasDetailedInfo = false;  ///< false for a record built from the disk list alone
    /// The system's own name for the disk, such as "/dev/mmcblk0", if that is not made of the identifier. It
    /// says nothing about the kind or the identity of the disk.
    std::optional<std::string> systemName = {};
    /// The sentences that explain why nothing may be written, if the system gives a reason.
    std::optional<std::string> protectionReason = {};

    bool operator==(const SDWholeDisk&) const = default;

    std::string displaySummary() const;  ///< returns media name, size and identifier
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

/// Returns the size of a disk or partition as a text such as "31.9 GB"; 0 bytes are an "Unknown size".
[[nodiscard]] std::string sizeOrUnknown(uint64_t bytes);

/// Returns the path of a disk's device, such as "/dev/disk4".
[[nodiscard]] std::string devicePath(const std::string& identifier);

/// Returns the path of a disk's raw device, such as "/dev/rdisk4".
[[nodiscard]] std::string rawDevicePath(const std::string& identifier);

}  // namespace tessel
