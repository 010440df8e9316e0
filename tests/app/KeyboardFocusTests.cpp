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

    void confirmWithTheKeyboard() {
        button("Write Disk Image").setFocus();
        press(Qt::Key_Space);
        until([this] { return alert(); });
        press(Qt::Key_Tab);
        press(Qt::Key_Space);
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

TEST_F(KeyboardFocusTests, isOnStopDuringAWriteAndThenWhereItWas) {
    const std::pair<const char*, const char*> ends[] = {{"busy", "Write Disk Image"}, {"", verify}};
    for (const auto& [refusal, end] : ends) {
        SCOPED_TRACE(end);
        reader.reinsert("disk4");
        reader.setBehaviour("disk4", {.authorization = refusal, .delays = {{"eject", 0.5}}});
        openReady();
        confirmWithTheKeyboard();
        until([this] { return focused() == "Stop"; });
        if (!*refusal) {
            until([this] { return viewModel().writePhaseTitle() == "Ejecting SD Card"; });
            until([this] { return focused() == "the window"; });
        }
        untilIdle();
        EXPECT_EQ(focused(), end) << "or before it, if that can't be used any more";
    }
}

}  // namespace tessel
