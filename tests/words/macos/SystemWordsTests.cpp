#include <gmock/gmock.h>

#include "tests/words/Sentences.h"

namespace tessel {

TEST(MacWordsTests, theSentencesAreTheseToTheLetter) {
    EXPECT_THAT(
        sentencesOf(systemWords()),
        testing::ElementsAre(
            "Scanning every whole disk visible to macOS.",
            "macOS returned no whole-disk identifiers. Confirm that App Sandbox is disabled and press "
            "Refresh "
            "Disks again.",
            "macOS did not report the SD card as writable.", "The macOS authopen utility is unavailable.",
            "The macOS authorization utility could not be launched: ",
            "macOS denied raw SD-card access. Allow removable-volume access for VelmoraTessel in System "
            "Settings, then try again.",
            "macOS ejected the SD card. It is now safe to physically remove it.",
            "macOS has ejected the SD card, so it is now safe to physically remove it.", "macOS calls it "));
}

}  // namespace tessel
