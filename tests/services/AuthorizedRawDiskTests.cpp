#include "services/AuthorizedRawDisk.h"

#include <gtest/gtest.h>

namespace tessel {

TEST(AuthorizedRawDiskTests, aHandleComparesBytesWithItsBlocks) {
    const AuthorizedRawDiskHandle handle{.device = nullptr, .blockSize = 4096, .blockCount = 1000};
    const struct {
        uint64_t bytes;
        bool isCapacity;
        bool isHeld;
    } cases[] = {
        {0, false, true},          {1, false, true},           {4'096'000, true, true},
        {4'095'999, false, true},  {4'095'488, false, true},   {4'096'001, false, false},
        {4'100'096, false, false}, {UINT64_MAX, false, false},
    };
    for (const auto& [bytes, isCapacity, isHeld] : cases) {
        EXPECT_EQ(handle.hasCapacity(bytes), isCapacity) << bytes;
        EXPECT_EQ(handle.holds(bytes), isHeld) << bytes;
    }
}

}  // namespace tessel
