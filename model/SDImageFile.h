#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "foundation/Text.h"

namespace tessel {

/// Names the image that was chosen, and keeps the size that it had at that moment.
struct SDImageFile {
    std::filesystem::path url;
    uint64_t sizeBytes = 0;

    /// Both return texts that can be shown to a person, whatever characters the path has.
    std::string displayName() const { return printable(url.filename().string()); }
    std::string displayPath() const { return printable(url.string()); }

    bool operator==(const SDImageFile&) const = default;
};

}  // namespace tessel
