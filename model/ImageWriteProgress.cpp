#include "model/ImageWriteProgress.h"

#include <algorithm>

namespace tessel {

double ImageWriteProgress::fractionCompleted() const {
    if (totalBytes == 0) return phase == ImageWritePhase::completed ? 1.0 : 0.0;
    return std::min(1.0, static_cast<double>(completedBytes) / static_cast<double>(totalBytes));
}

}  // namespace tessel
