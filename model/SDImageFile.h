#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "foundation/Text.h"

namespace tessel {

/// The chosen image, with the size in bytes that it had at that moment.
struct SDImageFile {
    std::filesystem::path url;
    uint64_t sizeBytes = 0;

    /// Returns the name in a form that is safe to show, whatever characters it has. So does displayPath().
    std::string displayName() const { return printable(url.filename().string()); }
    std::string displayPath() const { return printable(url.string()); }

    bool operator==(const SDImageFile&) const = default;
};

}  // namespace tessel
