#pragma once

#include <cstdint>

namespace tessel {

/// Lists the phases of a write in the order in which they are reported.
enum class ImageWritePhase {
    preparingTarget,
    authorizingDevice,
    writingImage,
    synchronizing,
    verifyingImage,
    ejecting,
    completed,
};

/// Reports how far a running write has come.
struct ImageWriteProgress {
    ImageWritePhase phase = ImageWritePhase::preparingTarget;
    uint64_t completedBytes = 0;  ///< counts the image's bytes, not the padding of the last block
    uint64_t totalBytes = 0;      ///< is the image's size

    bool operator==(const ImageWriteProgress&) const = default;

    /// Returns 0 to 1. Where there is nothing to write, only the completed phase counts as finished.
    double fractionCompleted() const;
};

}  // namespace tessel
