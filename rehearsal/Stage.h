#pragma once

#include <filesystem>

#include "rehearsal/SimulatedReader.h"

namespace tessel {

/// Everything that a rehearsal needs: a simulated card reader with the disks of an ordinary computer, and a
/// sample image. It all lies in a folder that is removed with this object.
class Stage {
  public:
    /// Makes the folder, the reader and the disks. Throws PlatformError or std::filesystem::filesystem_error.
    Stage();
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;
    ~Stage();

    [[nodiscard]] SimulatedReader& reader() { return simulatedReader; }

    /// Makes an image of 256 MB and one byte, whose last block is therefore not full.
    [[nodiscard]] std::filesystem::path makeSampleImage() const;

  private:
    std::filesystem::path folder;
    SimulatedReader simulatedReader;
};

}  // namespace tessel
