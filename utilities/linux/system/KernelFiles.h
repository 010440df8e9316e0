#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

/// Reads the kernel's files below /sys and /proc. A missing file or folder is an answer; a failure of any
/// other kind throws PlatformError, since a sign that can't be read must not count as absent.
namespace tessel {

/// Returns the first line of the file, or nothing if there is no such file.
[[nodiscard]] std::optional<std::string> firstLineOf(const std::filesystem::path& file);

/// Returns the names in the folder; none if there is no such folder.
[[nodiscard]] std::vector<std::string> namesIn(const std::filesystem::path& folder);

/// Returns the files that match a pattern of glob(3).
[[nodiscard]] std::vector<std::string> filesMatching(const std::string& pattern);

}  // namespace tessel
