#include "views/log/OperationLogView.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QScrollBar>
#include <QTest>
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

    OperationLogView view{pause};
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

TEST_F(OperationLogViewTests, everyKindOfInteractionPausesUntilThePersonIsIdle) {
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

}  // namespace tessel
