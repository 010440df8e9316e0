#pragma once

#include <string_view>

namespace tessel {

/// Returns whether the text is exactly "disk" and a number. A partition's identifier has a suffix: "disk4s1".
[[nodiscard]] bool isWholeDiskIdentifier(std::string_view text);

}  // namespace tessel
