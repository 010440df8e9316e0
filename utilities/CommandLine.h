#pragma once

#include <optional>
#include <string>
#include <string_view>

/// What the command lines of both utilities have in common.
namespace tessel {

enum ExitStatus : int {
    success = 0,
    failure = 1,
    wrongUsage = 64,
};

/// Returns the "disk4" of "/dev/disk4" (prefix "/dev/") or "/dev/rdisk4" (prefix "/dev/r"). Returns nothing
/// for a path that is not the prefix and the identifier of a whole disk.
[[nodiscard]] std::optional<std::string> wholeDiskIn(std::string_view path, std::string_view prefix);

}  // namespace tessel
