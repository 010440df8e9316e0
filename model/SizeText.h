#pragma once

#include <cstdint>
#include <string>

namespace tessel {

/// The size of a disk or partition as it is shown to a person: "31.9 GB", or "Unknown size" for 0.
[[nodiscard]] std::string sizeText(uint64_t bytes);

}  // namespace tessel
