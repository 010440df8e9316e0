#include "viewmodel/WriteProgress.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <string_view>

#include "foundation/ByteCount.h"

namespace tessel {

namespace {

using enum ImageWritePhase;

/// How a phase is shown.
struct PhasePresentation {
    /// A progress value: `start` plus `share` times the finished fraction of the phase.
    struct Value {
        double start;
        double share = 0;

        double at(double fraction) const { return std::clamp(start + share * fraction, 0.0, 1.0); }
    };

    ImageWritePhase phase;
    std::string_view title;
    Value overall;
    Value preparationAndWriting;
    std::string_view detail;  ///< the sentence after the byte counts, in phases that count bytes
    bool countsBytes = false;
    std::string_view logSentence = {};
};

constexpr auto presentations = std::to_array<PhasePresentation>({
    {.phase = preparingTarget,
     .title = "Preparing SD Card",
     .overall = {.start = 0.02},
     .preparationAndWriting = {.start = 0.02},
     .detail = "Unmounting and preparing the selected SD card.",
     .logSentence = "Preparing the selected SD card and unmounting its volumes."},
    {.phase = authorizingDevice,
     .title = "Authorizing Raw Device",
     .overall = {.start = 0.05},
     .preparationAndWriting = {.start = 0.06},
     .detail = "Waiting for authorized raw-device access.",
     .logSentence = "Requesting authorized access to the raw SD-card device."},
    {.phase = writingImage,
     .title = "Writing Image",
     .overall = {.start = 0.05, .share = 0.62},
     .preparationAndWriting = {.start = 0.06, .share = 0.9},
     .detail = " written.",
     .countsBytes = true,
     .logSentence = "Authorized raw-device access was granted. Writing image data."},
    {.phase = synchronizing,
     .title = "Synchronizing Media",
     .overall = {.start = 0.7},
     .preparationAndWriting = {.start = 0.98},
     .detail = "Flushing written data to the physical media.",
     .logSentence = "Image data was written. Synchronizing the physical media."},
    {.phase = verifyingImage,
     .title = "Verifying Image",
     .overall = {.start = 0.7, .share = 0.27},
     .preparationAndWriting = {.start = 1.0},
     .detail = " verified.",
     .countsBytes = true,
     .logSentence = "Synchronization completed. Verifying the image through the same raw-device descriptor."},
    {.phase = ejecting,
     .title = "Ejecting SD Card",
     .overall = {.start = 0.99},
     .preparationAndWriting = {.start = 1.0},
     .detail = "Ejecting the completed SD card.",
     .logSentence = "The media operation completed. Ejecting the SD card."},
    {.phase = completed,
     .title = "Completed",
     .overall = {.start = 1.0},
     .preparationAndWriting = {.start = 1.0},
     .detail = "The SD-card operation completed successfully."},
});

constexpr bool isEveryPhaseInItsPlace() {
    for (size_t place = 0; place < presentations.size(); ++place)
        if (presentations[place].phase != static_cast<ImageWritePhase>(place)) return false;
    return presentations.back().phase == completed;
}
static_assert(isEveryPhaseInItsPlace());

const PhasePresentation& presentationOf(ImageWritePhase phase) {
    return presentations[static_cast<size_t>(phase)];
}

std::string byteText(uint64_t bytes) {
    return byteCountText(std::min<uint64_t>(bytes, std::numeric_limits<int64_t>::max()));
}

std::string detailOf(const ImageWriteProgress& report) {
    const auto& presentation = presentationOf(report.phase);
    std::string detail(presentation.detail);
    if (!presentation.countsBytes) return detail;
    return byteText(report.completedBytes) + " of " + byteText(report.totalBytes) + detail;
}

}  // namespace

std::string phaseTitle(ImageWritePhase phase) {
    return std::string(presentationOf(phase).title);
}

std::optional<std::string> phaseLogMessage(ImageWritePhase phase) {
    const auto sentence = presentationOf(phase).logSentence;
    return sentence.empty() ? std::nullopt : std::optional(std::string(sentence));
}

WriteProgress WriteProgress::of(const ImageWriteProgress& report) {
    const auto& presentation = presentationOf(report.phase);
    const auto fraction = report.fractionCompleted();
    return {.writeOperationProgress = presentation.overall.at(fraction),
            .sdPreparationAndWriteProgress = presentation.preparationAndWriting.at(fraction),
            .writePhaseTitle = phaseTitle(report.phase),
            .writeProgressDetail = detailOf(report),
            .currentWritePhase = report.phase};
}

std::string WriteProgress::failurePhaseTitle() const {
    return (currentWritePhase ? phaseTitle(*currentWritePhase) : "Image Write") + " Failed";
}

}  // namespace tessel
