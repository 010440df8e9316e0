#include <QSplitterHandle>
#include <QWindow>
#include <array>

#include "app/WindowLayout.h"
#include "tests/app/WindowTest.h"
#include "views/controls/Card.h"
#include "views/controls/DisclosureButton.h"
#include "views/controls/StatusBadge.h"
#include "views/controls/Switch.h"
#include "views/controls/TextLabel.h"
#include "views/log/OperationLogView.h"

namespace tessel {

namespace {

constexpr QSize largeScreen(1920, 1080);
constexpr QSize smallScreen(812, 608);
constexpr QSize tinyScreen(812, 500);

class SmallScreenTests : public WindowTest {
  protected:
    /// Handles events often enough, since each layout may lead to another one.
    static void letLayoutsHappen() {
        for (int pass = 0; pass < 20; ++pass)
            QApplication::processEvents();
    }

    void dragPanes(int distance) {
        auto& handle = the<QSplitterHandle>();
        const QPoint grip = handle.rect().center();
        QTest::mousePress(&handle, Qt::LeftButton, {}, grip);
        QTest::mouseMove(&handle, grip + QPoint(distance, distance));
        QTest::mouseRelease(&handle, Qt::LeftButton, {}, grip + QPoint(distance, distance));
        QTest::qWait(20);
    }

    void expectNothingCutOff() {
        for (const auto* card : shownWidgets<Card>(window())) {
            SCOPED_TRACE(textsIn(*card).front());
            EXPECT_GE(card->width(), card->minimumSizeHint().width());
            EXPECT_GE(card->height(), card->heightForWidth(card->width()));
            EXPECT_GE(card->height(), card->minimumSizeHint().height());
            const auto* pane = card->parentWidget();
            EXPECT_LE(card->geometry().right(), pane->width());
            EXPECT_LE(pane->width(), pane->parentWidget()->width());
        }
    }
};

}  // namespace

TEST_F(SmallScreenTests, nothingIsCutOffHoweverSmallWindowAndPanesAre) {
    reader.changeDetails("disk4", {{"MediaName", std::string(80, 'W') + " SD Card"}});
    openWriting();
    clickRow("disk4");
    QTest::qWait(1);
    click(the<DisclosureButton>());
    click(button("Stop"));
    struct Case {
        WindowSizes::Room room;
        QSize size, expectedSize;
        Qt::Orientation expectedPanes;
    };
    const Case cases[] = {
        {{largeScreen}, {10, 10}, {1080, 720}, Qt::Horizontal},
        {{largeScreen, false}, {800, 10}, {800, 400}, Qt::Horizontal},
        {{smallScreen}, {799, 10}, {799, 400}, Qt::Vertical},
        {{smallScreen}, {10, 10}, {480, 400}, Qt::Vertical},
    };
    for (const auto& [room, size, smallest, panes] : cases) {
        window().fitInto(room);
        window().resize(size);
        QTest::qWait(20);
        EXPECT_EQ(window().size(), smallest);
        for (const int drag : {0, -1000, 1000}) {
            SCOPED_TRACE(std::to_string(smallest.width()) + " after " + std::to_string(drag));
            dragPanes(drag);
            expectNothingCutOff();
        }
        EXPECT_EQ(the<QSplitter>().orientation(), panes);
    }
}

TEST_F(SmallScreenTests, aWindowBehindAnotherScrollsNowhereWhenItsControlsAreDisabled) {
    open();
    window().fitInto({tinyScreen});
    button("Select Image").setFocus();
    QWindow otherProgram;
    otherProgram.show();
    otherProgram.requestActivate();
    until([&] { return QGuiApplication::focusWindow() == &otherProgram; });
    viewModel().refreshDisks();
    untilIdle();
    EXPECT_FALSE(button("Select Image").visibleRegion().isEmpty());
}

TEST_F(SmallScreenTests, everythingGrowsWithTheFontWhileTheProgramRuns) {
    openReady();
    const QFont usual = QApplication::font();
    const auto heights = [this] {
        return std::array{button("Select Image").height(), the<OperationLogView>().fontMetrics().height(),
                          row("disk4").height(), the<StatusSign>().height(),
                          control<Switch>("Show All Disks").height()};
    };
    const auto before = heights();
    for (const double factor : {1.4, 1.8, 1.0}) {
        QFont font = usual;
        font.setPointSizeF(usual.pointSizeF() * factor);
        QApplication::setFont(font);
        letLayoutsHappen();
        SCOPED_TRACE(factor);
        expectNothingCutOff();
        for (const auto* disk : {"disk4", "disk5"})
            EXPECT_EQ(row(disk).visibleRegion().boundingRect(), row(disk).rect()) << "without scrolling";
        const auto now = heights();
        for (size_t control = 0; control < before.size(); ++control)
            EXPECT_NEAR(now[control] / (before[control] * factor), 1, 0.2) << control;
    }
    EXPECT_EQ(heights(), before);
}

TEST_F(SmallScreenTests, anOpenQuestionGrowsWithTheFontAndShowsAllOfIt) {
    openReady();
    click(button("Write Disk Image"));
    const QFont usual = QApplication::font();
    QFont larger = usual;
    larger.setPointSizeF(usual.pointSizeF() * 1.8);
    QApplication::setFont(larger);
    letLayoutsHappen();
    for (const auto* label : shownWidgets<TextLabel>(*alert()))
        EXPECT_GE(label->height(), label->heightForWidth(label->width())) << label->text().toStdString();
    QApplication::setFont(usual);
}

TEST_F(SmallScreenTests, theKeysLeadThroughTheTableAndWhatHasTheFocusIsInView) {
    for (int number = 10; number < 20; ++number)
        reader.addDisk({.identifier = "disk" + std::to_string(number),
                        .mediaName = "SDXC Card",
                        .sizeBytes = cardSize,
                        .medium = SimulatedDisk::Medium::none});
    openReady();
    row("disk4").setFocus();
    const std::pair<Qt::Key, const char*> keys[] = {
        {Qt::Key_Up, "disk4"},        {Qt::Key_Down, "disk5"},    {Qt::Key_PageDown, "disk15"},
        {Qt::Key_PageDown, "disk19"}, {Qt::Key_PageUp, "disk13"}, {Qt::Key_End, "disk19"},
        {Qt::Key_Down, "disk19"},     {Qt::Key_Home, "disk4"},
    };
    for (const auto& [key, disk] : keys) {
        press(key);
        EXPECT_EQ(window().focusWidget(), &row(disk)) << disk;
        EXPECT_TRUE(row(disk).fields().isInspected);
        EXPECT_FALSE(row(disk).visibleRegion().isEmpty());
    }
    window().fitInto({tinyScreen});
    QTest::qWait(20);
    const auto expectFocusInView = [this] {
        QTest::qWait(1);
        const auto* focused = window().focusWidget();
        for (auto* around = focused->parentWidget(); around; around = around->parentWidget()) {
            EXPECT_TRUE(around->rect().contains(QRect(focused->mapTo(around, QPoint()), focused->size())))
                << focused->metaObject()->className() << " " << focused->accessibleName().toStdString();
        }
    };
    for (const auto key : {Qt::Key_Tab, Qt::Key_Backtab}) {
        for (int stop = 0; stop < 15; ++stop) {
            press(key);
            expectFocusInView();
            if (dynamic_cast<CompactDiskRow*>(window().focusWidget())) press(Qt::Key_End);
            expectFocusInView();
        }
    }
}

}  // namespace tessel
