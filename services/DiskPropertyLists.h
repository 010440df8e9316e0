#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "model/DiskLayout.h"
#include "model/SDWholeDisk.h"

/// Reads what the disk utility prints. A key that is missing or oddly typed falls back to another key and
/// then to a default, so one strange entry never costs the whole record.
namespace tessel {

struct DiskList {
    std::vector<std::string> identifiers;  ///< of whole disks only, ordered
    std::map<std::string, DiskLayout, std::less<>> layouts;

    /// What the list says about this disk, or null.
    [[nodiscard]] const DiskLayout* layoutOf(std::string_view identifier) const;
};

/// Reads the output of the list command. Throws PlatformError when it is no property list, and
/// TesselError::commandFailed when it is no dictionary.
[[nodiscard]] DiskList parseDiskList(std::string_view output);

/// Reads the output of the info command for the disk that was asked for; the layout that the list gave for it
/// may be null. Gives nothing when the output is no dictionary. Throws PlatformError when it is no property
/// list.
[[nodiscard]] std::optional<SDWholeDisk> parseDiskInfo(std::string_view output, std::string_view identifier,
                                                       const DiskLayout* layout);

}  // namespace tessel
