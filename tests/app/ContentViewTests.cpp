#include "app/StatusTexts.h"
#include "tests/app/WindowTest.h"
#include "views/controls/DisclosureButton.h"
#include "views/controls/Switch.h"

namespace tessel {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsSupersetOf;
using testing::Not;

/// Counts the turns in which the window asked to be shown anew.
class RenderCounter : public QObject {
  public:
    explicit RenderCounter(QWidget& window) { window.installEventFilter(this); }
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::MetaCall) ++renders;
        return false;
    }
    int rendersUntilQuiet() {
        renders = 0;
        QTest::qWait(20);
        return renders;
    }

  private:
    int renders = 0;
};

class ContentViewTests : public WindowTest {
  protected:
    std::string inspected() {
        for (const auto& disk : shownDisks()) {
            if (row(disk).fields().isInspected) return disk;
        }
        return "";
    }
    void toggleShowAll() { click(control<Switch>("Show All Disks")); }
};

constexpr auto noDetails =
    "Select a row to make Disk Details available. Details remain collapsed until opened explicitly.";

}  // namespace

TEST_F(ContentViewTests, percentagesAreRoundedHalfAwayFromZero) {
    const std::pair<double, const char*> percentages[] = {
        {0.004, "0%"}, {0.005, "1%"}, {0.424, "42%"}, {0.995, "100%"}, {1.0, "100%"}};
    for (const auto& [fraction, text] : percentages)
        EXPECT_EQ(percentText(fraction).toStdString(), text);
}

TEST_F(ContentViewTests, hidesWhatIsNoCardUnlessAsked) {
    open();
    EXPECT_THAT(shownDisks(), ElementsAre("disk4", "disk5"));
    EXPECT_THAT(texts(), IsSupersetOf({"2 shown", "2 selectable", "2 hidden"}));
    toggleShowAll();
    EXPECT_THAT(shownDisks(), ElementsAre("disk0", "disk4", "disk5", "disk7"));
    EXPECT_THAT(texts(), IsSupersetOf({"4 shown", "2 selectable"}));
    EXPECT_THAT(texts(), Not(Contains(testing::EndsWith(" hidden"))));
    click(control<QAbstractButton>("Disk"));
    EXPECT_THAT(shownDisks(), ElementsAre("disk7", "disk5", "disk4", "disk0"));
}

TEST_F(ContentViewTests, keepsInspectingTheSameDiskElseTheTargetElseNone) {
    open();
    EXPECT_EQ(inspected(), "");
    EXPECT_THAT(texts(), Contains(noDetails));
    toggleShowAll();
    clickRow("disk0");
    EXPECT_EQ(inspected(), "disk0");
    EXPECT_THAT(texts(), Not(Contains(noDetails)));
    toggleShowAll();
    EXPECT_EQ(inspected(), "");

    toggleShowAll();
    clickTarget("disk4");
    QTest::qWait(1);
    EXPECT_EQ(inspected(), "") << "choosing a target does not inspect it";
    clickRow("disk0");
    toggleShowAll();
    QTest::qWait(1);
    EXPECT_EQ(inspected(), "disk4");
    click(the<DisclosureButton>());
    EXPECT_EQ(shownWidgets<DisclosureButton>(window()).size(), 2u) << "the details have one of their own";
    clickRow("disk5");
    EXPECT_EQ(shownWidgets<DisclosureButton>(window()).size(), 1u) << "details of another disk are closed";
    rescan();
    EXPECT_EQ(inspected(), "disk5");
    reader.removeDisk("disk5");
    rescan();
    EXPECT_EQ(inspected(), "disk4");
}

TEST_F(ContentViewTests, isShownAnewOncePerTurn) {
    openReady();
    RenderCounter counter(window());
    viewModel().setVerifyAfterWrite(false);
    viewModel().selectDisk("disk5");
    viewModel().selectDisk("disk4");
    viewModel().clearLog();
    EXPECT_EQ(counter.rendersUntilQuiet(), 1);
    viewModel().setVerifyAfterWrite(false);
    EXPECT_EQ(counter.rendersUntilQuiet(), 0);
}

TEST_F(ContentViewTests, scansOnceHoweverOftenItIsShown) {
    open();
    window().hide();
    window().show();
    QTest::qWait(20);
    EXPECT_THAT(log(), Contains("Scanning every whole disk visible to Linux.").Times(1));
}

TEST_F(ContentViewTests, hintsAtDisksThatCameOrWentAndScansOnlyWhenAsked) {
    open();
    auto& refresh = button("Refresh Disks");
    const auto plain = refresh.grab().toImage();
    const auto toggleDisk5 = {&SimulatedReader::removeDisk, &SimulatedReader::reinsert};
    for (const auto toggle : toggleDisk5) {
        EXPECT_EQ(refresh.toolTip(), "Refresh Disks (F5)");
        const auto listed = shownDisks();
        (reader.*toggle)("disk5");
        until([&] { return refresh.toolTip().startsWith("Disks have come or gone since the last scan."); });
        EXPECT_EQ(refresh.accessibleDescription() + " (F5)", refresh.toolTip());
        EXPECT_NE(refresh.grab().toImage(), plain) << "there is a dot";
        EXPECT_EQ(shownDisks(), listed);
        rescan();
        EXPECT_NE(shownDisks(), listed);
    }
    EXPECT_EQ(refresh.accessibleDescription(), "");
    EXPECT_EQ(refresh.grab().toImage(), plain);
}

TEST_F(ContentViewTests, aRunningWriteSaysHowFarItIsAndHowFastItGoes) {
    openWriting();
    EXPECT_EQ(window().windowTitle(), "59% – Velmora Tessel");
    QTest::qWait(2000);  // for as long as nothing can be said yet
    viewModel().applyWriteProgress({ImageWritePhase::writingImage, 12'000'000, imageSize});
    QTest::qWait(1);
    EXPECT_THAT(texts(), Contains(testing::EndsWith("MB/s · less than a minute left")));
    holds.writing.release();
    untilIdle();
    EXPECT_EQ(window().windowTitle(), "Velmora Tessel");
    EXPECT_THAT(texts(), Not(Contains(testing::HasSubstr("/s · "))));
}

TEST_F(ContentViewTests, clearEmptiesTheLog) {
    open();
    EXPECT_THAT(texts(), Contains("6 entries"));
    click(button("Clear"));
    QTest::qWait(1);
    EXPECT_THAT(log(), ElementsAre("No operation messages yet."));
    EXPECT_THAT(texts(), Contains("0 entries"));
    EXPECT_FALSE(button("Clear").isEnabled());
}

}  // namespace tessel
