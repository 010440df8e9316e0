#include "rehearsal/FileDigest.h"
#include "tests/app/WindowTest.h"

namespace tessel {

using testing::Contains;
using testing::ElementsAre;
using testing::IsSupersetOf;

using WholeWriteTests = WindowTest;

TEST_F(WholeWriteTests, withTheMouse) {
    open();
    EXPECT_EQ(badge(), "4 disks found · 2 selectable");
    answerPanel(image);
    EXPECT_THAT(texts(), IsSupersetOf({"os.img", image.string().c_str(), "20 MB", "20%"}));
    clickTarget("disk4");
    QTest::qWait(1);
    EXPECT_EQ(badge(), "Target disk4 selected");
    EXPECT_THAT(texts(), IsSupersetOf({"SDHC Card · 600 MB · disk4", "os.img · 20 MB", "40%"}));
    click(button("Write Disk Image"));
    click(button("Erase and Write to disk4"));
    until([this] { return alertTitled("SD Card Is Safe to Remove"); });
    untilIdle();

    EXPECT_EQ(badge(), "Image written and verified");
    EXPECT_THAT(textsIn(*alert()),
                Contains("The disk image was written and verified successfully. Linux has ejected the SD "
                         "card, so it is now safe to physically remove it."));
    click(button("Done"));
    EXPECT_FALSE(alert());
    EXPECT_THAT(texts(),
                IsSupersetOf({"Safe to Remove", "100%",
                              "Linux ejected the SD card. It is now safe to physically remove it."}));
    EXPECT_THAT(shownDisks(), ElementsAre("disk5"));
    EXPECT_EQ(log().back(), "SHA-256 of the image: " + digestOf(image, imageSize));
    EXPECT_EQ(digestOf(reader.mediumPath("disk4"), imageSize), digestOf(image, imageSize));
    EXPECT_THAT(deeds(), ElementsAre("unmountDisk", "authopen", "eject"));
}

}  // namespace tessel
