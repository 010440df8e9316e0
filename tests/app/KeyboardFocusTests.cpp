#include "tests/app/WindowTest.h"
#include "views/controls/Switch.h"
#include "views/log/OperationLogView.h"

namespace tessel {

namespace {

class KeyboardFocusTests : public WindowTest {
  protected:
    /// Which control of the window has the focus, or would have it if the window were active.
    std::string focused() {
        const auto* control = window().focusWidget();
        if (const auto* button = dynamic_cast<const QAbstractButton*>(control))
            return button->text().toStdString();
        return control == &window() ? "the window" : control ? control->accessibleName().toStdString() : "";
    }
};

constexpr auto verify = "Verify the written image with SHA-256";

}  // namespace

TEST_F(KeyboardFocusTests, returnsToWhereItWasWhenAnOperationEnds) {
    open();
    EXPECT_EQ(focused(), "Select Image") << "after the first scan";
    button("Refresh Disks").setFocus();
    for (const bool personMovesOn : {false, true}) {
        press(Qt::Key_Space);
        until([this] { return viewModel().isBusy(); });
        QTest::qWait(1);
        EXPECT_EQ(focused(), "the window");
        if (personMovesOn) the<OperationLogView>().setFocus();
        untilIdle();
        EXPECT_EQ(focused(), personMovesOn ? "Operation log" : "Refresh Disks");
    }
    for (const char* answer : {"Select Image", "Cancel"}) {
        button("Select Image").setFocus();
        answerPanel(image, answer);
        EXPECT_EQ(focused(), "Select Image") << answer;
    }
    control<Switch>(verify).setFocus();
    viewModel().refreshDisks();
    untilIdle();
    EXPECT_EQ(focused(), verify);
}

}  // namespace tessel
