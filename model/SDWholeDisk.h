#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "model/SDDiskPartition.h"

namespace tessel {

/// One whole disk as the operating system described it at one moment. A plain value: it stays true to what
/// was read and never looks again.
struct SDWholeDisk {
    std::string id;                           ///< device identifier such as "disk4", without "/dev/"
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

    bool operator==(const SDWholeDisk&) const = default;

    std::string displaySummary() const;  ///< media name, size and identifier
    std::string locationText() const;
    std::string partitionSchemeText() const;
    std::string capabilitySummary() const;
    std::string partitionCountText() const;
};

}  // namespace tessel
