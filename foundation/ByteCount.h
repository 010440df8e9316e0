#pragma once

#include <cstdint>
#include <string>

namespace tessel {

/// A size as people read it: decimal units up to EB and a decimal point in every locale. 0 is "Zero KB", 1 is
/// "1 byte"; bytes and KB have no fraction, MB at most one digit, GB and above at most two, without trailing
/// zeros, halves rounded up; a value that rounds to 1000 is carried into the next unit ("1 MB", never "1000
/// KB").
[[nodiscard]] std::string byteCountText(uint64_t bytes);

}  // namespace tessel
