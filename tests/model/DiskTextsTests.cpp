#include "model/DiskTexts.h"

#include <gtest/gtest.h>

#include <tuple>

#include "tests/support/SampleDisks.h"

namespace tessel {

TEST(DiskTextsTests, aDiskSaysWhatIsUnknown) {
    EXPECT_EQ(SDWholeDisk().capabilitySummary(),
              "Unknown location · Virtual or unavailable · Read-only or unknown · Details unavailable");
}

TEST(DiskTextsTests, anImageLiesOnTheDiskWhereItsPathBeginsWithAMountPoint) {
    const std::tuple<const char*, const char*, bool> cases[] = {
        {"/media/user/CARD", "/media/user/CARD/os.img", true},
        {"/media/user/CARD", "/media/user/CARD/old/os.img", true},
        {"/media/user/CARD", "/media/user/CARD2/os.img", false},
        {"/media/user/CARD", "/media/user/os.img", false},
        {"", "/media/user/CARD/os.img", false},
        {"\u2068/media/user/\u05e9\u2069", "/media/user/\u05e9/os.img", true},
    };
    for (const auto& [mountPoint, file, liesOnIt] : cases) {
        auto card = sampleCard("disk4");
        card.partitions = {{.id = "disk4s1"}, {.id = "disk4s2", .mountPoint = mountPoint}};
        EXPECT_EQ(imageOnDiskText({.url = file, .sizeBytes = 1}, card).has_value(), liesOnIt)
            << mountPoint << " " << file;
    }
}

TEST(DiskTextsTests, anEmptyTableSaysWhetherDisksAreHidden) {
    EXPECT_TRUE(emptyTableText(0).starts_with("No whole disks"));
    EXPECT_FALSE(emptyTableText(1).starts_with("No whole disks"));
}

}  // namespace tessel
