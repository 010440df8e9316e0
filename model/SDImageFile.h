#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "foundation/Text.h"

namespace tessel {

/// The image that was chosen, with its size at that moment.
struct SDImageFile {
    std::filesystem::path url;
    uint64_t sizeBytes = 0;

    /// The file's name, and its whole path, as they are shown to a person.
    std::string displayName() const { return printable(url.filename().string()); }
    std::string displayPath() const { return printable(url.string()); }

    bool operator==(const SDImageFile&) const = default;
};

}  // namespace tessel
