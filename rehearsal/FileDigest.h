#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

namespace tessel {

/// Returns the SHA-256 digest of the first bytes of a file or device, in lower-case hexadecimal as sha256sum
/// prints it. Reads in the plainest way there is, to check the write path from outside. Throws
/// std::runtime_error when there are fewer bytes.
[[nodiscard]] std::string digestOf(const std::filesystem::path& path, uint64_t length);

}  // namespace tessel
