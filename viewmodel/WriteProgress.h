#pragma once

#include <functional>
#include <optional>
#include <string>

#include "foundation/Published.h"
#include "model/ImageWriteProgress.h"

namespace tessel {

/// How far a write has come, in numbers and words. They keep the end of the last write until the next
/// selection or write. Main thread only.
class WriteProgress {
  public:
    explicit WriteProgress(const std::function<void()>& onChange);

    /// 0 to 1, of the whole write.
    [[nodiscard]] double overall() const { return overallFraction(); }
    /// 0 to 1, up to the flush.
    [[nodiscard]] double preparationAndWriting() const { return preparationFraction(); }
    [[nodiscard]] const std::string& title() const { return titleText(); }
    [[nodiscard]] const std::string& detail() const { return detailText(); }
    /// Of the last report; absent before the first one.
    [[nodiscard]] std::optional<ImageWritePhase> phase() const { return reportedPhase(); }

    void reset();
    /// Shows a report. Gives the sentence to log, when the phase is another than the one logged last and has
    /// one.
    std::optional<std::string> show(const ImageWriteProgress& report);
    /// Remembers the phase of a report, and goes on showing what was said last.
    void notePhase(ImageWritePhase phase) { reportedPhase = phase; }
    void say(const std::string& title, const std::string& detail);
    void complete();

    /// What is shown above the progress bars when the write failed in its present phase.
    [[nodiscard]] std::string failureTitle() const;

  private:
    Published<double> overallFraction;
    Published<double> preparationFraction;
    Published<std::string> titleText;
    Published<std::string> detailText;
    Published<std::optional<ImageWritePhase>> reportedPhase;
    std::optional<ImageWritePhase> lastLoggedPhase;
};

}  // namespace tessel
