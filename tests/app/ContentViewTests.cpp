// Disks in the window: which are listed, which stays inspected, and the hint that disks have come or gone.

#include "tests/app/WindowTest.h"
#include "views/controls/DisclosureButton.h"
#include "views/controls/Switch.h"

namespace tessel {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsSupersetOf;
using testing::Not;

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

TEST_F(ContentViewTests, theSystemsOwnNamesSayWhatHasGone) {
    const auto isNews = [this](const char* gone) {
        viewModel().noteDiskChange({.systemName = gone, .hasGone = true});
        return viewModel().haveDisksChanged();
    };
    reader.changeDetails("disk4", {{"VelmoraTesselSystemName", "/dev/mmcblk0"}});
    open();
    EXPECT_FALSE(viewModel().haveDisksChanged());
    EXPECT_TRUE(isNews("sdz")) << "may be one of those without a name";
    for (const auto* disk : {"disk0", "disk5", "disk7"})
        reader.changeDetails(disk, {{"VelmoraTesselSystemName", std::string("/dev/sd") + disk[4]}});
    rescan();
    EXPECT_FALSE(isNews("sdz")) << "was not listed";
    EXPECT_TRUE(isNews("mmcblk0"));
}

TEST_F(ContentViewTests, whatTheProgramEjectsItselfIsNoNews) {
    for (const std::string authorization : {"", "busy"}) {
        reader.reinsert("disk4");
        reader.setBehaviour("disk4", {.authorization = authorization});
        startWrite();
        untilIdle();
        QTest::qWait(100);
        EXPECT_EQ(deeds().back(), "eject");
        EXPECT_FALSE(viewModel().haveDisksChanged()) << authorization;
        reader.reinsert("disk4");
        until([this] { return viewModel().haveDisksChanged(); });
    }
}

}  // namespace tessel
