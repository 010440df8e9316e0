#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>

#include "platform/Files.h"

namespace tessel {

/// Reads the open image file, and throws TesselError for whatever goes wrong with it. May be used on any
/// thread, but on only one at a time.
class ImageSource {
  public:
    /// Opens the file. Throws imageChanged if it does not have the expected size in bytes.
    ImageSource(const std::filesystem::path& url, uint64_t expectedSize);

    /// Fills the span with the bytes from the offset on, and lets the system drop that part of the file from
    /// its cache. Throws imageChanged if the file ends too early.
    void read(std::span<std::byte> bytes, uint64_t offset) const;

    /// Throws imageChanged if the file no longer has the expected size.
    void requireUnchangedSize() const;

  private:
    ReadOnlyFile file;
    uint64_t expectedSize;
};

}  // namespace tessel
