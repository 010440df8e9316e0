// What the user confirms before a write, and the disks that the window refuses.

#include "app/ConfirmationAlerts.h"
#include "model/SystemWords.h"
#include "rehearsal/window/WidgetSearch.h"
#include "tests/app/WindowTest.h"
#include "views/controls/Switch.h"
#include "views/controls/TextLabel.h"
#include "views/disks/DiskCells.h"

namespace tessel {

using testing::Contains;
using testing::IsEmpty;
using WriteGuardTests = WindowTest;

TEST_F(WriteGuardTests, onlyTheDestructiveButtonOfTheAlertStartsAWrite) {
    openReady();
    const std::function<void()> waysOut[] = {
        [this] { click(button("Cancel")); },
        [this] { press(Qt::Key_Escape); },
        [this] { press(Qt::Key_Return); },
        [this] { press(Qt::Key_Space); },
        [this] { alert()->close(); },
        [this] {
            press(Qt::Key_Tab);
            press(Qt::Key_Tab);
            press(Qt::Key_Return);
        },
        [this] {
            press(Qt::Key_Tab);
            click(*shownWidgets<TextLabel>(*alert()).back());
            press(Qt::Key_Return);
        },
    };
    for (const auto& leave : waysOut) {
        click(button("Write Disk Image"));
        EXPECT_FALSE(viewModel().isBusy());
        ASSERT_TRUE(alertTitled("Confirm Destructive Write"));
        notice();
        leave();
        until([this] { return !alert(); });
        QTest::qWait(20);
        EXPECT_FALSE(viewModel().isBusy());
    }
    EXPECT_THAT(deeds(), IsEmpty());
}

TEST_F(WriteGuardTests, aDoubleClickAnswersNoQuestionThatItsFirstClickHasAsked) {
    openReady();
    auto& verify = control<Switch>("Verify the written image with SHA-256");
    const auto doubleClick = [](QWidget& first, const std::function<QWidget&()>& second) {
        QTest::mouseClick(&first, Qt::LeftButton);
        QWidget& below = second();
        QTest::mouseDClick(&below, Qt::LeftButton);
        QTest::mouseClick(&below, Qt::LeftButton);
    };
    doubleClick(button("Write Disk Image"),
                [this]() -> QWidget& { return button("Erase and Write to disk4"); });
    EXPECT_TRUE(alertTitled("Confirm Destructive Write"));
    click(button("Cancel"));
    QTest::mouseDClick(&verify, Qt::LeftButton, {}, {12, 12}, 0);
    EXPECT_TRUE(viewModel().write().verifyAfterWrite());
    EXPECT_FALSE(viewModel().write().exists());
}

TEST_F(WriteGuardTests, aConfirmationDuringAScanIsAskedForAgain) {
    openReady();
    click(button("Write Disk Image"));
    reader.setBehaviour("disk4", {.delays = {{"info", 0.7}}});
    viewModel().refreshDisks();
    click(button("Erase and Write to disk4"));
    until([this] { return alertTitled("Confirm Destructive Write"); });
    EXPECT_FALSE(viewModel().write().exists());
    untilIdle();
    click(button("Erase and Write to disk4"));
    until([this] { return viewModel().write().exists(); });
    untilIdle();
}

TEST_F(WriteGuardTests, aProtectedDiskCannotBeChosen) {
    openReady();
    click(control<Switch>("Show All Disks"));
    for (const std::string protectedDisk : {"disk0", "disk7"}) {
        clickTarget(protectedDisk);
        row(protectedDisk).setFocus();
        press(Qt::Key_Space);
        press(Qt::Key_Return);
        viewModel().selectDisk(protectedDisk);
        QTest::qWait(1);
        EXPECT_EQ(viewModel().targets().selectedDiskID(), "disk4") << protectedDisk;
        EXPECT_EQ(badge(), "Target disk4 selected");
        EXPECT_FALSE(row(protectedDisk).fields().isSelectedTarget);
    }
}

TEST_F(WriteGuardTests, aLockSaysWhyTheSystemProtectsTheDisk) {
    reader.changeDetails(
        "disk5", {{"WritableMedia", false}, {"VelmoraTesselProtectionReason", "It holds the tide tables."}});
    open();
    const auto words = systemWords().cardNotWritable + " It holds the tide tables.";
    EXPECT_EQ(row("disk5").accessibleDescription().toStdString(), words);
    for (auto* cell : shownWidgets<DiskTargetSelector>(row("disk5")))
        EXPECT_EQ(cell->toolTip().toStdString(), words);
}

TEST_F(WriteGuardTests, theFirstMissingConditionIsSaidAtTheButton) {
    const auto expectHint = [this](const std::string& hint) {
        QTest::qWait(1);
        const auto& write = button("Write Disk Image");
        EXPECT_EQ(write.isEnabled(), hint.empty());
        EXPECT_EQ(write.toolTip().toStdString(), hint);
        EXPECT_EQ(write.accessibleDescription().toStdString(), hint);
        if (!hint.empty()) EXPECT_THAT(texts(), Contains(hint));
    };
    reader.addDisk({.identifier = "disk6",
                    .mediaName = "SDXC Card",
                    .sizeBytes = cardSize,
                    .partitions = {{.identifier = "disk6s1", .mountPoint = folder.path()}},
                    .medium = SimulatedDisk::Medium::none});
    open();
    expectHint("Select an uncompressed raw image with an .img, .raw, or .bin extension.");
    std::filesystem::resize_file(image, cardSize + 1);
    answerPanel(image);
    untilIdle();
    expectHint("Select a recognized and eligible SD card first.");
    clickTarget("disk4");
    expectHint("The selected image is larger than the selected SD card.");
    std::filesystem::resize_file(image, cardSize);
    answerPanel(image);
    untilIdle();
    expectHint("");
    const auto* warning =
        "The selected image lies on the selected SD card, which a write would erase. Copy the image to "
        "another disk and select the copy.";
    EXPECT_THAT(texts(), testing::Not(Contains(warning)));
    clickTarget("disk6");
    QTest::qWait(1);
    EXPECT_THAT(texts(), Contains(warning));
    viewModel().refreshDisks();
    QTest::qWait(1);
    EXPECT_EQ(button("Write Disk Image").toolTip(), "Another operation is running.");
    untilIdle();
}

TEST_F(WriteGuardTests, aConfirmationHoldsForWhatItSaysOnly) {
    openReady();
    click(button("Write Disk Image"));
    reader.removeDisk("disk4");
    viewModel().refreshDisks();
    until([this] { return viewModel().isBusy(); });
    untilIdle();
    click(button("Erase and Write to disk4"));
    EXPECT_FALSE(viewModel().isBusy());

    // The question is asked again about the present disks, and its answer bypasses no guard.
    until([this] { return alertTitled("Confirm Destructive Write"); });
    EXPECT_THAT(textsIn(*alert()), Contains("Select an image and a recognized SD card before continuing."));
    click(button("Erase and Write"));
    untilIdle();
    EXPECT_EQ(badge(), "Image write failed");
    EXPECT_THAT(texts(), Contains("Select a recognized and eligible SD card first."));
    EXPECT_THAT(deeds(), IsEmpty());
}

TEST_F(WriteGuardTests, theConfirmationNamesCardImageAndVerification) {
    reader.changeDetails("disk5", {{"VelmoraTesselSystemName", "/dev/mmcblk0"}});
    openReady();
    click(button("Write Disk Image"));
    EXPECT_THAT(
        textsIn(*alert()),
        Contains("WARNING: This will permanently erase all data on the recognized SD card /dev/disk4 (SDHC "
                 "Card, 600 MB) and write os.img (20 MB). The operation cannot be undone. SHA-256 "
                 "verification is enabled. Administrator authentication will be requested after "
                 "confirmation.\n\nUse at your own risk. The developer accepts no responsibility or "
                 "liability for data loss, device damage, corrupted media, or failed or interrupted "
                 "writes."));
    click(button("Cancel"));
    clickTarget("disk5");
    QTest::qWait(1);
    EXPECT_THAT(texts(), Contains("/dev/disk5 · mmcblk0"));
    EXPECT_THAT(confirmationMessage(viewModel()),
                testing::EndsWith("interrupted writes.\n\n" + systemWords().callsCard + "/dev/mmcblk0."));
}

}  // namespace tessel
