// The keyboard shortcuts, compared with the tool tips that name them.

#include "tests/app/WindowTest.h"
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

}  // namespace tessel
