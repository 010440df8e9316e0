#pragma once

#include <cstdint>
#include <string>

namespace tessel {

/// Returns the size as a text in decimal units up to EB, with a decimal point in every locale. 0 is "Zero KB"
/// and 1 is "1 byte". Bytes and KB have no fraction, MB have at most one digit, GB and above at most two;
/// halves are rounded up and trailing zeros dropped. A value that rounds to 1000 is carried into the next
/// unit ("1 MB", never "1000 KB").
[[nodiscard]] std::string byteCountText(uint64_t bytes);

}  // namespace tessel
