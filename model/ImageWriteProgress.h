#pragma once

#include <cstdint>

namespace tessel {

/// The phases of a write, in the order in which they are reported.
enum class ImageWritePhase {
    preparingTarget,
    authorizingDevice,
    writingImage,
    synchronizing,
    verifyingImage,
    ejecting,
    completed,
};

/// One report of a running write.
struct ImageWriteProgress {
    ImageWritePhase phase = ImageWritePhase::preparingTarget;
    uint64_t completedBytes = 0;  ///< image bytes finished in this phase, without the fill of the last block
    uint64_t totalBytes = 0;      ///< the image's size

    bool operator==(const ImageWriteProgress&) const = default;

    /// 0 to 1. Of nothing at all, only the completed phase counts as finished.
    double fractionCompleted() const;
};

}  // namespace tessel
