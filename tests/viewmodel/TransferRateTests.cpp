#include "viewmodel/TransferRate.h"

#include <gmock/gmock.h>

#include <cmath>

#include "foundation/Text.h"

namespace tessel {

using enum ImageWritePhase;

TEST(TransferRateTests, tellsTheTimeCalmlyHoweverTheCardBehaves) {
    constexpr uint64_t chunkSize = 8'000'000;
    constexpr uint64_t chunkCount = 300;
    const struct {
        ImageWritePhase phase;
        double (*secondsOf)(uint64_t chunk);
        std::string times;  ///< each time left that was shown, with the second when it first was
        std::string lastSpeed;
    } rows[] = {
        {writingImage, [](uint64_t chunk) { return chunk % 7 == 0   ? 4.4
                                                   : chunk % 7 == 1 ? 0
                                                                    : 0.24; },
         "6: about 4 minutes left; 7: about 3 minutes left; 74: about 2 minutes left; 124: about 90 "
         "seconds left; 158: about 1 minute left; 175: less than a minute left",
         "10.9 MB/s"},
        {writingImage, [](uint64_t chunk) { return chunk <= 100 ? 0.2 : 1.6; },
         "2: less than a minute left; 31: about 1 minute left; 38: about 90 seconds left; 47: about 2 "
         "minutes left; 63: about 3 minutes left; 191: about 2 minutes left; 236: about 90 seconds left; "
         "266: about 1 minute left; 281: less than a minute left",
         "5 MB/s"},
        {verifyingImage, [](uint64_t) { return 48.0; },
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
    TransferRate rate;
    for (const auto& [phase, secondsOf, expectedTimes, lastSpeed] : rows) {
        std::vector<std::string> times;
        std::string time;
        std::string speed;
        double seconds = 0;
        for (uint64_t chunk = 0; chunk <= chunkCount; seconds += secondsOf(++chunk)) {
            const TransferRate::TimePoint now(std::chrono::milliseconds(std::lround(seconds * 1000)));
            for (int repeated = 0; repeated < 2; ++repeated)
                rate.note({phase, chunk * chunkSize, chunkCount * chunkSize},
                          now + std::chrono::milliseconds(repeated));
            const auto separator = std::min(rate.text().find(" · "), rate.text().size());
            speed = rate.text().substr(0, separator);
            if (rate.text().substr(separator) == time) continue;
            time = rate.text().substr(separator);
            times.push_back(std::to_string(std::lround(seconds)) + ": " + time.substr(4));
        }
        EXPECT_EQ(joined(times, "; "), expectedTimes);
        EXPECT_EQ(speed, lastSpeed);
    }
    rate.note({synchronizing, 1, 1}, {});
    EXPECT_EQ(rate.text(), "");
}

}  // namespace tessel
