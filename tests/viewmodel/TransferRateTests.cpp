#include "viewmodel/TransferRate.h"

#include <gmock/gmock.h>

#include <cmath>

namespace tessel {

namespace {

using Texts = std::vector<std::string>;

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
    const Texts downFromFour{"",
                             "about 4 minutes left",
                             "about 3 minutes left",
                             "about 2 minutes left",
                             "about 90 seconds left",
                             "about 1 minute left",
                             "less than a minute left"};
    const struct {
        const char* what;
        std::vector<Stretch> stretches;
        Texts times;
        const char* lastSpeed;
    } rows[] = {
        {"steady", {{1, 0.8}}, downFromFour, "10 MB/s"},
        {"stuttering", {{6, 0.2}, {1, 4.4}}, downFromFour, "10.6 MB/s"},
        {"slowing down",
         {{100, 0.2}, {1000, 1.6}},
         {"", "less than a minute left", "about 1 minute left", "about 90 seconds left",
          "about 2 minutes left", "about 3 minutes left", "about 2 minutes left", "about 90 seconds left",
          "about 1 minute left", "less than a minute left"},
         "5 MB/s"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        Texts times{""};
        std::string lastSpeed;
        follow(2'400'000'000, row.stretches, [&](double, const std::string& text) {
            const auto separator = text.find(" · ");
            lastSpeed = text.substr(0, separator);
            const auto time = text.empty() ? "" : text.substr(separator + 4);
            if (time != times.back()) times.push_back(time);
        });
        EXPECT_EQ(times, row.times);
        EXPECT_EQ(lastSpeed, row.lastSpeed);
    }
}

}  // namespace tessel
