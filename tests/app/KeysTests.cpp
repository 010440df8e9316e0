// The keyboard shortcuts, compared with the tool tips that name them.

#include "tests/app/WindowTest.h"
#include "views/controls/DisclosureButton.h"
#include "views/controls/Switch.h"
#include "views/log/OperationLogView.h"

namespace tessel {

using KeysTests = WindowTest;

TEST_F(KeysTests, doWhatTheToolTipsSay) {
    openReady();
    EXPECT_EQ(button("Select Image").toolTip(), "Select Image (Ctrl+O)");
    EXPECT_EQ(button("Refresh Disks").toolTip(), "Refresh Disks (F5)");
    the<OperationLogView>().setFocus();
    press(Qt::Key_O, Qt::ControlModifier);
    until([] { return QApplication::activeModalWidget(); });
    press(Qt::Key_Escape);
    untilIdle();
    EXPECT_EQ(log().back(), "Image selection was cancelled.");
    press(Qt::Key_F5);
    until([this] { return viewModel().isBusy(); });
    untilIdle();
    EXPECT_EQ(badge(), "4 disks found · 2 selectable");
    press(Qt::Key_Escape);
    EXPECT_THAT(deeds(), testing::IsEmpty());
    for (const auto closing : {Qt::Key_W, Qt::Key_Q}) {
        window().show();
        press(closing, Qt::ControlModifier);
        EXPECT_FALSE(window().isVisible());
    }
}

TEST_F(KeysTests, returnDoesWhatSpaceDoesAndArrowsOpenAndClose) {
    openReady();
    auto& verify = control<Switch>("Verify the written image with SHA-256");
    bool verifies = true;
    for (const auto key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space}) {
        const auto* disk = viewModel().targets().selectedDiskID() == "disk4" ? "disk5" : "disk4";
        row(disk).setFocus(Qt::TabFocusReason);
        press(key);
        EXPECT_EQ(viewModel().targets().selectedDiskID(), disk);
        verify.setFocus(Qt::TabFocusReason);
        press(key);
        verifies = !verifies;
        EXPECT_EQ(viewModel().write().verifyAfterWrite(), verifies);
    }
    clickRow("disk4");
    QTest::qWait(1);
    auto& details = the<DisclosureButton>();
    details.setFocus(Qt::TabFocusReason);
    const std::pair<Qt::Key, bool> steps[] = {
        {Qt::Key_Right, true},  {Qt::Key_Right, true},  {Qt::Key_Left, false}, {Qt::Key_Left, false},
        {Qt::Key_Return, true}, {Qt::Key_Enter, false}, {Qt::Key_Space, true}};
    for (const auto& [key, isOpen] : steps) {
        press(key);
        EXPECT_EQ(details.isChecked(), isOpen) << key;
    }
}

TEST_F(KeysTests, closeTheWindowAboveWhichAnAlertIsShown) {
    for (const auto closing : {Qt::Key_W, Qt::Key_Q}) {
        openReady();
        click(button("Write Disk Image"));
        ASSERT_TRUE(alert());
        press(closing, Qt::ControlModifier);
        EXPECT_FALSE(window().isVisible());
        EXPECT_FALSE(viewModel().write().exists());
    }
    openWriting();
    press(Qt::Key_Q, Qt::ControlModifier);
    until([this] { return alertTitled("A Write Is Running"); });
    press(Qt::Key_Q, Qt::ControlModifier);
    EXPECT_TRUE(alertTitled("A Write Is Running")) << "asked once, and not answered";
    EXPECT_FALSE(viewModel().write().isCancellationRequested());
    click(button("Continue Writing"));
    holds.writing.release();
    until([this] { return alertTitled("SD Card Is Safe to Remove"); });
    EXPECT_TRUE(window().isVisible());
    press(Qt::Key_Q, Qt::ControlModifier);
    EXPECT_FALSE(window().isVisible());
}

}  // namespace tessel
