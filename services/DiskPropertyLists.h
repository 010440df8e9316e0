#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "model/SDWholeDisk.h"

/// Reads what the disk utility prints. For a key that is missing or has an unexpected type, another key and
/// then a default stands in, so that one strange entry never costs the whole record.
namespace tessel {

struct DiskList {
    std::vector<std::string> identifiers;  ///< of whole disks only, in order
    std::map<std::string, DiskLayout, std::less<>> layouts;

    /// Returns what the list says about this disk, or null.
    [[nodiscard]] const DiskLayout* layoutOf(std::string_view identifier) const;
};

/// Reads the output of the list command. Throws PlatformError when it is not a property list, and
/// TesselError::commandFailed when it is not a dictionary.
[[nodiscard]] DiskList parseDiskList(std::string_view output);

/// Reads the output of the info command for the disk that was asked about; the layout that the list gave for
/// it may be null. Returns nothing when the output is not a dictionary. Throws PlatformError when it is not a
/// property list.
[[nodiscard]] std::optional<SDWholeDisk> parseDiskInfo(std::string_view output, std::string_view identifier,
                                                       const DiskLayout* layout);

/// Returns the text for a disk's location if the report has none.
[[nodiscard]] std::string locationByFlag(std::optional<bool> isInternal);

}  // namespace tessel
