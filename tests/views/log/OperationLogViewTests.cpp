#include "views/log/OperationLogView.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>
#include <functional>
#include <random>

namespace tessel {

namespace {

using namespace std::chrono_literals;

constexpr auto pause = 200ms;

std::string linesUpTo(int count) {
    std::string text = "[12:00:00] Line 1";
    for (int number = 2; number <= count; ++number)
        text += "\n[12:00:00] Line " + std::to_string(number);
    return text;
}

void letPendingScrollsHappen() {
    QTest::qWait(20);
}

/// Shows a view with 100 lines that has scrolled to the last of them.
class OperationLogViewTests : public testing::Test {
  protected:
    explicit OperationLogViewTests(std::chrono::milliseconds pauseDuration = pause) : view(pauseDuration) {}

    void SetUp() override {
        view.resize(300, 200);
        view.show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&view));
        view.setFocus();
        view.setLog(linesUpTo(100), 100);
        letPendingScrollsHappen();
        ASSERT_TRUE(isAtEnd());
    }

    bool isAtEnd() const { return scroller().maximum() > 0 && scroller().value() == scroller().maximum(); }
    QScrollBar& scroller() const { return *view.verticalScrollBar(); }

    QPoint inWindow(const QWidget& part) const { return part.mapTo(&view, part.rect().center()); }
    void click(const QWidget& part) {
        QTest::mouseClick(view.windowHandle(), Qt::LeftButton, {}, inWindow(part));
    }
    void select(int anchor, int position) {
        QTextCursor cursor = view.textCursor();
        cursor.setPosition(anchor);
        cursor.setPosition(position, QTextCursor::KeepAnchor);
        view.setTextCursor(cursor);
    }
    std::pair<int, int> selection() const {
        return {view.textCursor().anchor(), view.textCursor().position()};
    }
    QString firstLineInView() const { return view.cursorForPosition({0, 0}).block().text(); }
    void wheelUp(const QWidget& part) {
        const QPoint position = inWindow(part);
        QWheelEvent event(position, view.mapToGlobal(position), {}, {0, 240}, Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(view.windowHandle(), &event);
    }
    void type(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(view.windowHandle(), key, modifiers);
    }
    bool resumes() const {
        return QTest::qWaitFor([this] { return view.isFollowingLatest() && isAtEnd(); });
    }

    OperationLogView view;
};

/// The same with a pause that outlasts what happens in it, however slow the computer is.
class LongPauseTests : public OperationLogViewTests {
  protected:
    LongPauseTests() : OperationLogViewTests(3s) {}
};

}  // namespace

TEST_F(OperationLogViewTests, theEndStaysInViewHoweverLinesWrap) {
    std::string text = linesUpTo(100);
    std::mt19937 random{1};
    for (std::size_t step = 0; step < 60; ++step) {
        text += "\n" + std::string(random() % 400, 'x') + " end";
        view.setLog(text, 101 + step);
        if (step % 3 == 0)
            view.resize(80 + static_cast<int>(random() % 500), 60 + static_cast<int>(random() % 300));
        letPendingScrollsHappen();
        ASSERT_TRUE(isAtEnd()) << step;
        ASSERT_EQ(view.horizontalScrollBar()->maximum(), 0) << step;
        QTextCursor end(view.document());
        end.movePosition(QTextCursor::End);
        ASSERT_TRUE(view.viewport()->rect().contains(view.cursorRect(end))) << step;
    }
}

TEST_F(OperationLogViewTests, everyKindOfInteractionPausesUntilTheUserIsIdle) {
    QWidget& viewport = *view.viewport();
    const std::pair<const char*, std::function<void()>> interactions[] = {
        {"wheel over the text", [&] { wheelUp(viewport); }},
        {"wheel over the scroll bar", [&] { wheelUp(scroller()); }},
        {"click in the text", [&] { click(viewport); }},
        {"click on the scroll bar", [&] { click(scroller()); }},
        {"select all", [&] { type(Qt::Key_A, Qt::ControlModifier); }},
        {"copy", [&] { type(Qt::Key_C, Qt::ControlModifier); }},
        {"page up", [&] { type(Qt::Key_PageUp); }},
    };
    for (const auto& [name, act] : interactions) {
        SCOPED_TRACE(name);
        ASSERT_TRUE(view.isFollowingLatest());
        QElapsedTimer idle;
        idle.start();
        act();
        EXPECT_FALSE(view.isFollowingLatest());
        EXPECT_TRUE(resumes());
        EXPECT_GE(idle.elapsed(), pause.count());
    }
}

TEST_F(LongPauseTests, aPausedLogStaysWhereItIsWhileLinesComeAndWrap) {
    std::string text = linesUpTo(100);
    for (std::size_t step = 0; step < 20; ++step) {
        type(Qt::Key_C, Qt::ControlModifier);
        scroller().setValue(scroller().maximum() * static_cast<int>(step % 10) / 12);
        const QString place = firstLineInView();
        text += "\n" + std::string(40 * step, 'x') + " end";
        view.setLog(text, 101 + step);
        letPendingScrollsHappen();
        ASSERT_EQ(firstLineInView(), place) << "line added in step " << step;
        view.resize(step % 2 == 0 ? 80 : 300, 200);
        letPendingScrollsHappen();
        ASSERT_EQ(firstLineInView(), place) << "wrapped anew in step " << step;
    }
    EXPECT_FALSE(view.isFollowingLatest());
    EXPECT_TRUE(resumes());
}

TEST_F(OperationLogViewTests, aSelectionIsKeptWhenLinesComeAndClampedOnReplacement) {
    const int end = view.document()->characterCount() - 1;
    const std::string shorter = "No operation messages yet.";
    const int shorterEnd = static_cast<int>(shorter.size());
    const std::pair<std::pair<int, int>, std::pair<int, int>> cases[] = {
        {{4, 9}, {4, 9}},
        {{end, 3}, {shorterEnd, 3}},
        {{3, end}, {3, shorterEnd}},
        {{40, 60}, {shorterEnd, shorterEnd}},
        {{end, end}, {shorterEnd, shorterEnd}},
    };
    for (const auto& [selected, clamped] : cases) {
        SCOPED_TRACE(testing::PrintToString(selected));
        view.setLog(linesUpTo(100), 100);
        select(selected.first, selected.second);
        view.setLog(linesUpTo(102), 102);
        EXPECT_EQ(view.toPlainText().toStdString(), linesUpTo(102));
        EXPECT_EQ(selection(), selected);
        view.setLog(shorter, 0);
        EXPECT_EQ(view.toPlainText().toStdString(), shorter);
        EXPECT_EQ(selection(), clamped);
    }
}

TEST_F(OperationLogViewTests, aButtonHeldLongerThanThePauseKeepsItPausedUntilThePauseAfterItsRelease) {
    for (const QWidget* part : {view.viewport(), static_cast<QWidget*>(&scroller())}) {
        QTest::mousePress(view.windowHandle(), Qt::LeftButton, {}, inWindow(*part));
        QTest::qWait(static_cast<int>(2.5 * pause.count()));
        EXPECT_FALSE(view.isFollowingLatest());
        QElapsedTimer idle;
        idle.start();
        QTest::mouseRelease(view.windowHandle(), Qt::LeftButton, {}, inWindow(*part));
        EXPECT_TRUE(resumes());
        EXPECT_GE(idle.elapsed(), pause.count());
    }
}

TEST_F(OperationLogViewTests, staleScrollRequestsDoNothing) {
    view.setLog(linesUpTo(101), 101);
    wheelUp(*view.viewport());
    const int place = scroller().value();
    letPendingScrollsHappen();
    EXPECT_EQ(scroller().value(), place);
}

TEST_F(OperationLogViewTests, theSameTextScrollsOnlyWithAnotherEntryCount) {
    for (const auto& [entryCount, scrolls] : {std::pair(100, false), {101, true}}) {
        scroller().setValue(0);
        view.setLog(linesUpTo(100), static_cast<std::size_t>(entryCount));
        letPendingScrollsHappen();
        EXPECT_EQ(isAtEnd(), scrolls) << entryCount;
    }
}

}  // namespace tessel
