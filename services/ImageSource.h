#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>

#include "platform/Files.h"

namespace tessel {

/// The open image file. Throws TesselError for what goes wrong with it. May be used on any one thread at a
/// time.
class ImageSource {
  public:
    /// Opens the file, which must have the expected size in bytes: imageChanged otherwise.
    ImageSource(const std::filesystem::path& url, uint64_t expectedSize);

    /// Fills the span from that offset, and lets the system forget that part of the file. Throws imageChanged
    /// when the file ends before.
    void read(std::span<std::byte> bytes, uint64_t offset) const;

    /// Throws imageChanged when the file no longer has the expected size.
    void requireUnchangedSize() const;

  private:
    ReadOnlyFile file;
    uint64_t expectedSize;
};

}  // namespace tessel
