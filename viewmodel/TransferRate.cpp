#include "viewmodel/TransferRate.h"

#include <cmath>

#include "foundation/ByteCount.h"

namespace tessel {

namespace {

using namespace std::chrono_literals;

constexpr auto leastTimeToJudge = 2s;
constexpr int fewestAdvancesToJudge = 2;
constexpr auto timeBetweenWords = 1s;
/// A time in seconds that outlasts the pauses in which a card tidies up, but forgets an old speed within a
/// minute.
constexpr double averagedSeconds = 20;
constexpr double clearlyLonger = 1.2;

constexpr double minute = 60;
constexpr double hour = 60 * minute;

double secondsBetween(TransferRate::TimePoint begin, TransferRate::TimePoint end) {
    return std::chrono::duration<double>(end - begin).count();
}

bool countsBytes(ImageWritePhase phase) {
    return phase == ImageWritePhase::writingImage || phase == ImageWritePhase::verifyingImage;
}

/// Returns a round time for a sentence, which differs from the true one by a fifth at most. Less than a
/// minute becomes 0.
double roundedTime(double seconds) {
    if (seconds < minute) return 0;
    const double step = seconds < 2 * minute    ? minute / 2
                        : seconds < 10 * minute ? minute
                        : seconds < hour        ? 5 * minute
                        : seconds < 2 * hour    ? hour / 2
                                                : hour;
    return std::round(seconds / step) * step;
}

std::string timeText(double rounded) {
    if (rounded < minute) return "less than a minute left";
    if (rounded == 1.5 * minute) return "about 90 seconds left";
    if (rounded == 1.5 * hour) return "about 90 minutes left";
    const bool inHours = rounded >= hour;
    const auto count = std::llround(rounded / (inHours ? hour : minute));
    return "about " + std::to_string(count) + (inHours ? " hour" : " minute") + (count == 1 ? "" : "s") +
           " left";
}

}  // namespace

void TransferRate::note(const ImageWriteProgress& report, TimePoint now) {
    if (!countsBytes(report.phase)) return reset();
    const bool continues =
        latest && latest->phase == report.phase && latest->completedBytes <= report.completedBytes;
    if (!continues) return begin(report, now);
    if (report.completedBytes == latest->completedBytes || now <= latest->time) return;

    average(static_cast<double>(report.completedBytes - latest->completedBytes),
            secondsBetween(latest->time, now));
    latest = {report.phase, report.completedBytes, now};
    const bool canJudge = ++advances >= fewestAdvancesToJudge && now - phaseBegan >= leastTimeToJudge;
    const bool isDue = !lastSaid || now - *lastSaid >= timeBetweenWords;
    if (canJudge && isDue && report.completedBytes <= report.totalBytes)
        say(report.totalBytes - report.completedBytes, now);
}

void TransferRate::begin(const ImageWriteProgress& report, TimePoint now) {
    reset();
    latest = {report.phase, report.completedBytes, now};
    phaseBegan = now;
}

/// Averages with weights that fade with age, so that no speed drops out of the average abruptly.
void TransferRate::average(double bytes, double seconds) {
    const double kept = std::exp(-seconds / averagedSeconds);
    const double weight = averagedSeconds * (1 - kept);
    recentBytes = recentBytes * kept + bytes / seconds * weight;
    recentSeconds = recentSeconds * kept + weight;
}

void TransferRate::say(uint64_t remainingBytes, TimePoint now) {
    const double bytesPerSecond = recentBytes / recentSeconds;
    const double seconds = static_cast<double>(remainingBytes) / bytesPerSecond;
    const double rounded = roundedTime(seconds);
    const bool isLonger = saidSeconds && rounded > *saidSeconds;
    if (!isLonger || roundedTime(seconds / clearlyLonger) > *saidSeconds) saidSeconds = rounded;
    words =
        byteCountText(static_cast<uint64_t>(std::llround(bytesPerSecond))) + "/s · " + timeText(*saidSeconds);
    lastSaid = now;
}

}  // namespace tessel
