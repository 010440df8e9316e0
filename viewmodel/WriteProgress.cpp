#include <algorithm>
#include <cstdint>
#include <limits>
#include <string_view>

#include "foundation/ByteCount.h"
#include "viewmodel/TesselViewModel.h"

namespace tessel {

namespace {

/// How a phase is shown. A progress value is `start` plus `share` times the finished fraction of the phase.
struct PhasePresentation {
    struct Value {
        double start;
        double share = 0;

        double at(double fraction) const { return std::clamp(start + share * fraction, 0.0, 1.0); }
    };

    std::string_view title;
    Value overall;
    Value preparationAndWriting;
    std::string_view detail;  ///< after the byte counts, in the phases that count bytes
    bool countsBytes;
    std::string_view logSentence;  ///< may be empty
};

/// In the order of the phases.
constexpr PhasePresentation presentations[] = {
    {"Preparing SD Card",
     {0.02},
     {0.02},
     "Unmounting and preparing the selected SD card.",
     false,
     "Preparing the selected SD card and unmounting its volumes."},
    {"Authorizing Raw Device",
     {0.05},
     {0.06},
     "Waiting for authorized raw-device access.",
     false,
     "Requesting authorized access to the raw SD-card device."},
    {"Writing Image",
     {0.05, 0.62},
     {0.06, 0.9},
     " written.",
     true,
     "Authorized raw-device access was granted. Writing image data."},
    {"Synchronizing Media",
     {0.7},
     {0.98},
     "Flushing written data to the physical media.",
     false,
     "Image data was written. Synchronizing the physical media."},
    {"Verifying Image",
     {0.7, 0.27},
     {1.0},
     " verified.",
     true,
     "Synchronization completed. Verifying the image through the same raw-device descriptor."},
    {"Ejecting SD Card",
     {0.99},
     {1.0},
     "Ejecting the completed SD card.",
     false,
     "The media operation completed. Ejecting the SD card."},
    {"Completed", {1.0}, {1.0}, "The SD-card operation completed successfully.", false, ""},
};

const PhasePresentation& presentationOf(ImageWritePhase phase) {
    return presentations[static_cast<size_t>(phase)];
}

std::string byteText(uint64_t bytes) {
    return byteCountText(std::min<uint64_t>(bytes, std::numeric_limits<int64_t>::max()));
}

std::string detailOf(const ImageWriteProgress& progress) {
    const auto& presentation = presentationOf(progress.phase);
    const std::string detail(presentation.detail);
    if (!presentation.countsBytes) return detail;
    return byteText(progress.completedBytes) + " of " + byteText(progress.totalBytes) + detail;
}

}  // namespace

std::string phaseTitle(ImageWritePhase phase) {
    return std::string(presentationOf(phase).title);
}

void TesselViewModel::applyWriteProgress(const ImageWriteProgress& progress) {
    currentWritePhase = progress.phase;
    if (isCancellationRequested()) return;

    const auto& presentation = presentationOf(progress.phase);
    const auto fraction = progress.fractionCompleted();
    writePhaseTitle = std::string(presentation.title);
    writeOperationProgress = presentation.overall.at(fraction);
    sdPreparationAndWriteProgress = presentation.preparationAndWriting.at(fraction);
    writeProgressDetail = detailOf(progress);

    if (lastLoggedWritePhase == progress.phase) return;
    lastLoggedWritePhase = progress.phase;
    if (!presentation.logSentence.empty()) appendLog(std::string(presentation.logSentence));
}

void TesselViewModel::resetWriteProgress() {
    writeOperationProgress = 0.0;
    sdPreparationAndWriteProgress = 0.0;
    writePhaseTitle = "Waiting to Start";
    writeProgressDetail = "Select an image and a recognized SD card.";
    currentWritePhase = std::nullopt;
    lastLoggedWritePhase = std::nullopt;
}

}  // namespace tessel
