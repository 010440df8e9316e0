#pragma once

#include <cstdint>
#include <string>

namespace tessel {

/// Words the size of a disk or partition, as in "31.9 GB"; 0 bytes are an "Unknown size".
[[nodiscard]] std::string sizeOrUnknown(uint64_t bytes);

}  // namespace tessel
