#include "foundation/ByteCount.h"

#include <gtest/gtest.h>

namespace tessel {

TEST(ByteCountTests, sizesReadAsPeopleSayThem) {
    const std::pair<uint64_t, const char*> cases[] = {
        {0, "Zero KB"},
        {1, "1 byte"},
        {999, "999 bytes"},
        {1'000, "1 KB"},
        {1'499, "1 KB"},
        {1'500, "2 KB"},
        {999'499, "999 KB"},
        {999'500, "1 MB"},
        {1'049'999, "1 MB"},
        {1'050'000, "1.1 MB"},
        {999'949'999, "999.9 MB"},
        {999'950'000, "1 GB"},
        {1'005'000'000, "1.01 GB"},
        {31'914'983'424, "31.91 GB"},
        {999'995'000'000, "1 TB"},
        {1'234'567'000'000'000, "1.23 PB"},
        {9'223'372'036'854'775'807, "9.22 EB"},
        {UINT64_MAX, "18.45 EB"},
    };
    for (const auto& [bytes, text] : cases)
        EXPECT_EQ(byteCountText(bytes), text) << bytes;
}

}  // namespace tessel
