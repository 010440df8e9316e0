#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tessel {

/// Returns the "disk4" of "/dev/disk4" (prefix "/dev/") or "/dev/rdisk4" (prefix "/dev/r"). Absent when the
/// path is anything but the prefix and the identifier of a whole disk.
[[nodiscard]] std::optional<std::string> wholeDiskIn(std::string_view path, std::string_view prefix);

}  // namespace tessel
