#include "viewmodel/TransferRate.h"

#include <gmock/gmock.h>

#include <cmath>

#include "foundation/Text.h"

namespace tessel {

namespace {

/// Chunks of 8 MB, each after that many seconds.
struct Stretch {
    int chunks;
    double seconds;
};

/// A phase that goes as the stretches say, over and over.
void follow(uint64_t totalBytes, const std::vector<Stretch>& stretches, const auto& look) {
    TransferRate rate;
    double seconds = 0;
    const auto note = [&](uint64_t completed) {
        const auto time = TransferRate::TimePoint(std::chrono::nanoseconds(std::llround(seconds * 1e9)));
        rate.note({ImageWritePhase::writingImage, completed, totalBytes}, time);
        look(seconds, rate.text());
    };
    note(0);
    for (uint64_t completed = 0; completed < totalBytes;) {
        for (const auto& stretch : stretches) {
            for (int chunk = 0; chunk < stretch.chunks && completed < totalBytes; ++chunk) {
                seconds += stretch.seconds;
                note(completed = std::min<uint64_t>(completed + 8'000'000, totalBytes));
            }
        }
    }
}

}  // namespace

TEST(TransferRateTests, tellsTheTimeCalmlyHoweverTheCardBehaves) {
    const struct {
        std::vector<Stretch> stretches;
        std::string times;  ///< which time was said, and in which second first
        std::string lastSpeed;
    } rows[] = {
        {{{1, 0.8}},
         "2: about 4 minutes left; 31: about 3 minutes left; 90: about 2 minutes left; 135: about 90 "
         "seconds left; 166: about 1 minute left; 182: less than a minute left",
         "10 MB/s"},
        {{{6, 0.2}, {1, 4.4}},
         "6: about 4 minutes left; 7: about 3 minutes left; 79: about 2 minutes left; 130: about 90 "
         "seconds left; 158: about 1 minute left; 175: less than a minute left",
         "10.6 MB/s"},
        {{{100, 0.2}, {1000, 1.6}},
         "2: less than a minute left; 31: about 1 minute left; 38: about 90 seconds left; 47: about 2 "
         "minutes left; 63: about 3 minutes left; 191: about 2 minutes left; 236: about 90 seconds left; "
         "266: about 1 minute left; 281: less than a minute left",
         "5 MB/s"},
        {{{1, 48}},
         "96: about 4 hours left; 1824: about 3 hours left; 5424: about 2 hours left; 8112: about 90 "
         "minutes left; 9936: about 1 hour left; 10992: about 55 minutes left; 11280: about 50 minutes "
         "left; 11568: about 45 minutes left; 11856: about 40 minutes left; 12192: about 35 minutes "
         "left; 12480: about 30 minutes left; 12768: about 25 minutes left; 13056: about 20 minutes "
         "left; 13392: about 15 minutes left; 13680: about 10 minutes left; 13872: about 9 minutes left; "
         "13920: about 8 minutes left; 13968: about 7 minutes left; 14016: about 6 minutes left; 14112: "
         "about 5 minutes left; 14160: about 4 minutes left; 14208: about 3 minutes left; 14256: about 2 "
         "minutes left; 14304: about 90 seconds left; 14352: less than a minute left",
         "167 KB/s"},
    };
    for (const auto& [stretches, expectedTimes, lastSpeed] : rows) {
        std::vector<std::string> times;
        std::string time;
        std::string speed;
        follow(2'400'000'000, stretches, [&](double seconds, const std::string& text) {
            const auto separator = std::min(text.find(" · "), text.size());
            speed = text.substr(0, separator);
            if (text.empty() || text.substr(separator) == time) return;
            time = text.substr(separator);
            times.push_back(std::to_string(std::lround(seconds)) + ": " + time.substr(4));
        });
        EXPECT_EQ(joined(times, "; "), expectedTimes);
        EXPECT_EQ(speed, lastSpeed);
    }
}

}  // namespace tessel
