#include <QApplication>
#include <QKeyEvent>

#include "tests/app/WindowTest.h"
#include "views/controls/Switch.h"
#include "views/log/OperationLogView.h"

namespace tessel {

namespace {

class KeyboardFocusTests : public WindowTest {
  protected:
    /// Returns the text of the control that has the focus, or would have it if the window were active.
    std::string focused() {
        const auto* control = window().focusWidget();
        if (const auto* button = dynamic_cast<const QAbstractButton*>(control))
            return button->text().toStdString();
        return control == &window() ? "the window" : control ? control->accessibleName().toStdString() : "";
    }
};

/// Sends the key repeatedly, as a keyboard does while it is held down.
void hold(QWidget& widget, Qt::Key key, int repetitions) {
    for (int i = 0; i < repetitions; ++i) {
        for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(type, key, {}, {}, i > 0 || type == QEvent::KeyRelease);
            QApplication::sendEvent(&widget, &event);
        }
    }
    QTest::keyRelease(&widget, key);
}

constexpr auto verify = "Verify the written image with SHA-256";

}  // namespace

TEST_F(KeyboardFocusTests, returnsToWhereItWasWhenAnOperationEnds) {
    open();
    EXPECT_EQ(focused(), "Select Image") << "after the first scan";
    button("Refresh Disks").setFocus();
    for (const bool userMovesOn : {false, true}) {
        press(Qt::Key_Space);
        until([this] { return viewModel().isBusy(); });
        QTest::qWait(1);
        EXPECT_EQ(focused(), "the window");
        if (userMovesOn) the<OperationLogView>().setFocus();
        untilIdle();
        EXPECT_EQ(focused(), userMovesOn ? "Operation log" : "Refresh Disks");
    }
    for (const char* answer : {"Select Image", "Cancel"}) {
        button("Select Image").setFocus();
        answerPanel(image, answer);
        EXPECT_EQ(focused(), "Select Image") << answer;
    }
    button("Clear").setFocus();
    press(Qt::Key_Space);
    EXPECT_EQ(focused(), "Operation log");
    control<Switch>(verify).setFocus();
    viewModel().refreshDisks();
    untilIdle();
    EXPECT_EQ(focused(), verify);
}

TEST_F(KeyboardFocusTests, aHeldKeyIsNoShortcutAndChoosesNoDiskAgain) {
    open();
    for (const bool isRepeated : {false, true}) {
        QKeyEvent key(QEvent::ShortcutOverride, Qt::Key_F5, {}, {}, isRepeated);
        key.ignore();
        QApplication::sendEvent(&window(), &key);
        EXPECT_EQ(key.isAccepted(), isRepeated);
    }
    hold(row("disk4"), Qt::Key_Return, 5);
    QTest::qWait(1);
    EXPECT_EQ(std::ranges::count_if(log(), [](const auto& line) { return line.starts_with("Selected SD"); }),
              1);
}

TEST_F(KeyboardFocusTests, theKeyThatStartsAWriteDoesNotStopIt) {
    holds.writing.hold();
    for (const auto key : {Qt::Key_Return, Qt::Key_Space}) {
        openReady();
        button("Write Disk Image").setFocus();
        press(key);
        ASSERT_TRUE(alert());
        auto& erase = button("Erase and Write to disk4");
        erase.setFocus(Qt::TabFocusReason);
        press(key);
        EXPECT_TRUE(alert()) << "too soon to have been read";
        notice();
        hold(erase, key, 5);
        until([this] { return viewModel().write().exists(); });
        QTest::qWait(10);
        EXPECT_EQ(focused(), "the window");
        for (int presses = 0; presses < 3; ++presses)
            press(key);
        EXPECT_FALSE(viewModel().write().isCancellationRequested());
        holds.writing.release();
        untilIdle();
        press(key);
        EXPECT_TRUE(viewModel().write().verifyAfterWrite()) << "nor does it switch anything afterwards";
        application.reset();
        reader.reinsert("disk4");
        holds.writing.hold();
    }
}

}  // namespace tessel
