#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "model/ImageWriteProgress.h"

namespace tessel {

/// Describes how fast a phase goes and how long it will still take, from the reports of a write and their
/// times. The text is calm: the speed is a moving average, the text changes once a second at most, and the
/// time left rises only when it has clearly become longer.
class TransferRate {
  public:
    using TimePoint = std::chrono::steady_clock::time_point;

    void note(const ImageWriteProgress& report, TimePoint now);
    void reset() { *this = {}; }

    /// Returns a text such as "12.4 MB/s · about 2 minutes left". At a steady speed the time is right to
    /// within a quarter. Returns an empty text in phases that do not count bytes, and until the reports
    /// suffice for an estimate.
    [[nodiscard]] const std::string& text() const { return words; }

  private:
    void begin(const ImageWriteProgress& report, TimePoint now);
    void average(double bytes, double seconds);
    void say(uint64_t remainingBytes, TimePoint now);

    struct Mark {
        ImageWritePhase phase;
        uint64_t completedBytes;
        TimePoint time;
    };
    std::optional<Mark> latest;
    TimePoint phaseBegan;
    int advances = 0;  ///< the number of reports of this phase with more bytes than the one before
    double recentBytes = 0;
    double recentSeconds = 0;
    std::optional<TimePoint> lastSaid;
    std::optional<double> saidSeconds;
    std::string words;
};

}  // namespace tessel
