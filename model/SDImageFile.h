#pragma once

#include <cstdint>
#include <filesystem>

namespace tessel {

/// The image that was chosen, with its size at that moment.
struct SDImageFile {
    std::filesystem::path url;
    uint64_t sizeBytes = 0;

    bool operator==(const SDImageFile&) const = default;
};

}  // namespace tessel
