#pragma once

#include <filesystem>
#include <string>

#include "rehearsal/SimulatedReader.h"

namespace tessel {

/// Everything that a rehearsal needs, in a folder of its own that is gone at the end: a simulated card reader
/// with the disks of an ordinary computer, and a sample image.
class Stage {
  public:
    /// Throws PlatformError or std::filesystem::filesystem_error.
    Stage();
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;
    ~Stage();

    [[nodiscard]] SimulatedReader& reader() { return simulatedReader; }

    /// Makes an image of 256 MB and one byte, so that its last block is not full.
    [[nodiscard]] std::filesystem::path makeSampleImage() const;

  private:
    std::filesystem::path folder;
    SimulatedReader simulatedReader;
};

/// The SHA-256 digest of the first bytes of a file or device, read in the plainest way there is, to check the
/// write path from outside. Throws std::runtime_error when there are fewer.
[[nodiscard]] std::string digestOf(const std::filesystem::path& path, uint64_t length);

}  // namespace tessel
