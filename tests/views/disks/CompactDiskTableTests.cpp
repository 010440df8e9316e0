#include "views/disks/CompactDiskTable.h"

#include <gtest/gtest.h>

#include <QRadioButton>
#include <QTest>
#include <QVBoxLayout>

#include "rehearsal/window/WidgetSearch.h"
#include "tests/support/SampleDisks.h"
#include "views/disks/DiskTargetSelector.h"
#include "views/disks/SortableDiskHeader.h"

namespace tessel {

namespace {

/// Carries out what the table asks for, as the program's window does.
class CompactDiskTableTests : public testing::Test {
  protected:
    CompactDiskTableTests() {
        auto* column = new QVBoxLayout(&window);
        table = new CompactDiskTable({
            .sort = [this](DiskSortField field) { sortedBy.push_back(field); },
            .inspect =
                [this](const SDWholeDisk& disk) {
                    fields.inspectedDiskID = disk.id;
                    inspected.push_back(disk.id);
                    redraw();
                },
            .select =
                [this](const SDWholeDisk& disk) {
                    selected.push_back(disk.id);
                    whenSelected(disk.id);
                },
        });
        column->addWidget(table);
        column->addStretch();
        window.resize(620, 500);
    }

    void show(const std::vector<SDWholeDisk>& disks) {
        fields.disks = disks;
        redraw();
        window.show();
        window.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    }

    void redraw() { table->display(fields); }

    CompactDiskRow& row(const std::string& id) {
        for (CompactDiskRow* each : shownWidgets<CompactDiskRow>(*table)) {
            if (each->fields().disk.id == id) return *each;
        }
        throw std::out_of_range("There is no row for " + id + ".");
    }

    void clickTarget(const std::string& id) {
        QTest::mouseClick(shownWidgets<DiskTargetSelector>(row(id)).front()->childAt(22, 25), Qt::LeftButton);
    }

    std::string focusedID() {
        const auto* focused = dynamic_cast<CompactDiskRow*>(QApplication::focusWidget());
        return focused ? focused->fields().disk.id : "";
    }

    void press(Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); }

    QWidget window;
    CompactDiskTable* table;
    CompactDiskTable::Fields fields;
    std::vector<DiskSortField> sortedBy;
    std::vector<std::string> inspected;
    std::vector<std::string> selected;
    std::function<void(const std::string&)> whenSelected = [this](const std::string& id) {
        fields.selectedTargetID = id;
        redraw();
    };
};

using Identifiers = std::vector<std::string>;

std::vector<SDWholeDisk> manyCards(int count) {
    std::vector<SDWholeDisk> disks;
    for (int number = 1; number <= count; ++number)
        disks.push_back(sampleCard("disk" + std::to_string(number)));
    return disks;
}

}  // namespace

TEST_F(CompactDiskTableTests, theRadioControlNeverChangesByItself) {
    show({sampleCard("disk4"), sampleCard("disk5")});
    whenSelected = [](const std::string&) {};
    QRadioButton* radio = shownWidgets<QRadioButton>(row("disk4")).front();
    QTest::mouseClick(radio, Qt::LeftButton);
    EXPECT_EQ(selected, Identifiers{"disk4"});
    EXPECT_FALSE(radio->isChecked());
    fields.selectedTargetID = "disk5";
    redraw();
    EXPECT_FALSE(radio->isChecked());
    EXPECT_TRUE(shownWidgets<QRadioButton>(row("disk5")).front()->isChecked());
}

TEST_F(CompactDiskTableTests, headingsAskForTheirFieldAndSayTheDirection) {
    show({sampleCard("disk4")});
    const auto headings = shownWidgets<SortableDiskHeader>(*table);
    ASSERT_EQ(headings.size(), 3u);
    for (SortableDiskHeader* heading : headings)
        QTest::mouseClick(heading, Qt::LeftButton);
    EXPECT_EQ(sortedBy, (std::vector{DiskSortField::disk, DiskSortField::size, DiskSortField::media}));
    EXPECT_EQ(headings[0]->accessibleName(), "Disk, sorted ascending");
    fields.sortField = DiskSortField::size;
    fields.sortAscending = false;
    redraw();
    EXPECT_EQ(headings[0]->accessibleName(), "Disk");
    EXPECT_EQ(headings[1]->accessibleName(), "Size, sorted descending");
}

TEST_F(CompactDiskTableTests, keysMoveAndInspectAndScroll) {
    show(manyCards(20));
    shownWidgets<SortableDiskHeader>(*table).back()->setFocus();
    press(Qt::Key_Tab);
    EXPECT_EQ(focusedID(), "disk1");
    struct Case {
        Qt::Key key;
        std::string expected;
    };
    const Case cases[]{
        {Qt::Key_Down, "disk2"},     {Qt::Key_Up, "disk1"},        {Qt::Key_Up, "disk1"},
        {Qt::Key_PageDown, "disk7"}, {Qt::Key_PageDown, "disk13"}, {Qt::Key_PageUp, "disk7"},
        {Qt::Key_End, "disk20"},     {Qt::Key_Down, "disk20"},     {Qt::Key_PageDown, "disk20"},
        {Qt::Key_PageUp, "disk14"},  {Qt::Key_Home, "disk1"},      {Qt::Key_PageUp, "disk1"},
    };
    for (const Case& one : cases) {
        press(one.key);
        EXPECT_EQ(focusedID(), one.expected);
        EXPECT_EQ(inspected.back(), one.expected);
        EXPECT_FALSE(row(one.expected).visibleRegion().isEmpty()) << one.expected;
    }
    press(Qt::Key_Space);
    EXPECT_EQ(selected, Identifiers{"disk1"});
}

TEST_F(CompactDiskTableTests, allRowsAreOneTabStopAfterTheHeadings) {
    auto* after = new QPushButton("After");
    window.layout()->addWidget(after);
    show(manyCards(3));
    fields.inspectedDiskID = "disk2";
    redraw();
    shownWidgets<SortableDiskHeader>(*table).back()->setFocus();
    press(Qt::Key_Tab);
    EXPECT_EQ(focusedID(), "disk2");
    press(Qt::Key_Down);
    press(Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), after);
    press(Qt::Key_Backtab);
    EXPECT_EQ(focusedID(), "disk3");
}

TEST_F(CompactDiskTableTests, aRowMayVanishInItsOwnClickAndTheFocusStaysInTheTable) {
    show({sampleCard("disk4"), sampleCard("disk5")});
    row("disk4").setFocus();
    whenSelected = [this](const std::string&) {
        fields.disks = {sampleCard("disk5")};
        redraw();
    };
    clickTarget("disk4");
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(focusedID(), "disk5");
    EXPECT_EQ(shownWidgets<CompactDiskRow>(*table).size(), 1u);
}

}  // namespace tessel
