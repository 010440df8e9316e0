#pragma once

#include <optional>
#include <string>
#include <string_view>

/// What the two system utilities share.
namespace tessel {

/// How a utility ends.
enum ExitStatus : int {
    success = 0,
    failure = 1,
    wrongUsage = 64,
};

/// The "disk4" of "/dev/disk4" (prefix "/dev/") or "/dev/rdisk4" (prefix "/dev/r"). Absent when the path is
/// not the prefix, "disk" and a number.
std::optional<std::string> wholeDiskIdentifier(std::string_view path, std::string_view prefix);

}  // namespace tessel
