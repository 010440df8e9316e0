#pragma once

#include <functional>
#include <optional>
#include <string>

#include "foundation/Published.h"
#include "model/ImageWriteProgress.h"
#include "viewmodel/TransferRate.h"

namespace tessel {

/// Tells how far a write has come, in numbers and in words. Both show the end of the last write until the
/// next selection or write. Use it on the main thread only.
class WriteProgress {
  public:
    explicit WriteProgress(const std::function<void()>& onChange);

    /// Returns the progress of the whole write, from 0 to 1.
    [[nodiscard]] double overall() const { return overallFraction(); }
    /// Returns the progress up to the flush, from 0 to 1.
    [[nodiscard]] double preparationAndWriting() const { return preparationFraction(); }
    [[nodiscard]] const std::string& title() const { return titleText(); }
    [[nodiscard]] const std::string& detail() const { return detailText(); }
    /// Returns what else the user should know or do, or an empty text.
    [[nodiscard]] const std::string& hint() const { return hintText(); }
    /// Returns the speed and the time that the phase will still take, or an empty text if nothing can be
    /// said.
    [[nodiscard]] const std::string& transferRate() const { return transferRateText(); }
    /// Returns the phase of the last report, or nothing before the first one.
    [[nodiscard]] std::optional<ImageWritePhase> phase() const { return reportedPhase(); }

    void reset();
    /// Shows a report that came at that time. Returns the sentence to log, if the phase has one and is not
    /// the phase that was logged last.
    std::optional<std::string> show(const ImageWriteProgress& report, TransferRate::TimePoint now);
    /// Remembers the phase of a report, but leaves everything shown as it is.
    void notePhase(ImageWritePhase phase) { reportedPhase = phase; }
    /// Shows these words in place of what the last report said.
    void say(const std::string& title, const std::string& detail, const std::string& hint = "");
    void complete();

    /// Returns the title shown above the progress bars when the write fails in its present phase.
    [[nodiscard]] std::string failureTitle() const;

  private:
    Published<double> overallFraction;
    Published<double> preparationFraction;
    Published<std::string> titleText;
    Published<std::string> detailText;
    Published<std::string> hintText;
    Published<std::string> transferRateText;
    Published<std::optional<ImageWritePhase>> reportedPhase;
    std::optional<ImageWritePhase> lastLoggedPhase;
    TransferRate rate;
};

}  // namespace tessel
