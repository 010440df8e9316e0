#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

/// Reads what the kernel tells below /sys and /proc. That something is not there is an answer; a failure of
/// any other kind throws PlatformError, since a sign that can't be read must not pass for none.
namespace tessel {

/// Returns the first line of the file; absent when there is no such file.
[[nodiscard]] std::optional<std::string> firstLineOf(const std::filesystem::path& file);

/// Returns the names of what is in the folder; none when there is no such folder.
[[nodiscard]] std::vector<std::string> namesIn(const std::filesystem::path& folder);

/// Returns the files that match a pattern of glob(3).
[[nodiscard]] std::vector<std::string> filesMatching(const std::string& pattern);

}  // namespace tessel
