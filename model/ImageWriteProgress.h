#pragma once

#include <algorithm>
#include <cstdint>

namespace tessel {

/// The phases of a write in the order in which they are reported.
enum class ImageWritePhase {
    preparingTarget,
    authorizingDevice,
    writingImage,
    synchronizing,
    verifyingImage,
    ejecting,
    completed,
};

/// A report on how far a running write has come.
struct ImageWriteProgress {
    ImageWritePhase phase = ImageWritePhase::preparingTarget;
    uint64_t completedBytes = 0;  ///< of the image, without the padding of the last block
    uint64_t totalBytes = 0;      ///< the size of the image

    bool operator==(const ImageWriteProgress&) const = default;

    /// Returns the finished fraction of the phase, from 0 to 1. If there is nothing to write, only the
    /// completed phase counts as finished.
    [[nodiscard]] double fractionCompleted() const {
        if (totalBytes == 0) return phase == ImageWritePhase::completed ? 1.0 : 0.0;
        return std::min(1.0, static_cast<double>(completedBytes) / static_cast<double>(totalBytes));
    }
};

}  // namespace tessel
