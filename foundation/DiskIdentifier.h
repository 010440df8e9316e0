#pragma once

#include <string_view>

namespace tessel {

/// Returns whether the text is "disk" and a number, and nothing else. A partition's identifier goes on:
/// "disk4s1".
[[nodiscard]] bool isWholeDiskIdentifier(std::string_view text);

}  // namespace tessel
