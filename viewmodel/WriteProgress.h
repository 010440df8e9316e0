#pragma once

#include <optional>
#include <string>

#include "model/ImageWriteProgress.h"

namespace tessel {

/// The progress of a write, in numbers and in words.
struct WriteProgress {
    double writeOperationProgress = 0;         ///< of the whole write, from 0 to 1
    double sdPreparationAndWriteProgress = 0;  ///< up to the flush, from 0 to 1
    std::string writePhaseTitle = "Waiting to Start";
    std::string writeProgressDetail = "Select an image and a recognized SD card.";
    std::string writeHint = {};          ///< what else the user should know or do; may be empty
    std::string writeTransferRate = {};  ///< speed and time left; empty while there is no estimate
    std::optional<ImageWritePhase> currentWritePhase = {};  ///< of the last report

    /// Returns the progress that a report shows, apart from the transfer rate.
    [[nodiscard]] static WriteProgress of(const ImageWriteProgress& report);

    /// Returns the title for a write that has failed in its present phase.
    [[nodiscard]] std::string failurePhaseTitle() const;

    bool operator==(const WriteProgress&) const = default;
};

[[nodiscard]] std::string phaseTitle(ImageWritePhase phase);

/// Returns the sentence that is logged on entering the phase, if it has one.
[[nodiscard]] std::optional<std::string> phaseLogMessage(ImageWritePhase phase);

}  // namespace tessel
