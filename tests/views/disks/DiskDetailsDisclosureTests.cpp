#include "views/disks/DiskDetailsDisclosure.h"

#include <gmock/gmock.h>

#include <QAccessible>
#include <QTest>

#include "foundation/SystemWords.h"
#include "rehearsal/window/WidgetSearch.h"
#include "tests/support/SampleDisks.h"
#include "views/controls/DisclosureButton.h"
#include "views/controls/InfoRow.h"
#include "views/controls/TextLabel.h"

namespace tessel {

namespace {

using testing::Contains;
using testing::IsSupersetOf;
using testing::Not;

class DiskDetailsDisclosureTests : public testing::Test {
  protected:
    void show(const SDWholeDisk& disk, bool isSelectedTarget = false) {
        fields = {.disk = disk, .isSelectedTarget = isSelectedTarget, .isExpanded = fields.isExpanded};
        disclosure.display(fields);
        disclosure.resize(560, 600);
        disclosure.show();
        // The layout shows rows that were added a moment later.
        QCoreApplication::sendPostedEvents();
    }

    std::vector<std::string> texts() {
        std::vector<std::string> found;
        for (const TextLabel* label : shownWidgets<TextLabel>(disclosure))
            found.push_back(label->text().toStdString());
        for (const InfoRow* row : shownWidgets<InfoRow>(disclosure))
            found.push_back("= " + row->value().toStdString());
        return found;
    }

    void press(size_t index) {
        QTest::mouseClick(shownWidgets<DisclosureButton>(disclosure).at(index), Qt::LeftButton);
    }

    DiskDetailsDisclosure::Fields fields;
    DiskDetailsDisclosure disclosure{[this](bool isExpanded) {
        fields.isExpanded = isExpanded;
        disclosure.display(fields);
    }};
};

constexpr const char* passed =
    "This device is positively identified as an SD card and passed the current physical-media, "
    "writable-media, size, and removability checks.";

}  // namespace

TEST_F(DiskDetailsDisclosureTests, showsTheDiskOnceOpened) {
    show(sampleCard("disk4"), true);
    EXPECT_THAT(texts(), IsSupersetOf({"Disk Details", "SDXC Reader · 32 GB · disk4", "Selected Target"}));
    EXPECT_THAT(texts(), Not(Contains(passed)));
    press(0);
    EXPECT_THAT(texts(), IsSupersetOf({"= /dev/disk4", "= SDXC Reader", "= External", "= 32 GB",
                                       "= Secure Digital", "= FDisk_partition_scheme",
                                       "= External · Physical · Writable · Removable · Ejectable",
                                       "No partitions reported", passed}));
    press(0);
    EXPECT_THAT(texts(), Not(Contains(passed)));
}

TEST_F(DiskDetailsDisclosureTests, saysWhyADiskIsProtected) {
    fields.isExpanded = true;
    show(sampleFixedDisk("disk0"));
    EXPECT_THAT(texts(), Contains("disk0 is always protected."));
    EXPECT_THAT(texts(), Not(Contains("Selected Target")));

    SDWholeDisk locked = sampleCard("disk4");
    locked.isWritable = false;
    locked.protectionReason = "It holds the tide tables.";
    show(locked);
    EXPECT_THAT(texts(), Contains(systemWords().cardNotWritable + " It holds the tide tables."));
}

TEST_F(DiskDetailsDisclosureTests, partitionsAreClosedForEachDiskUntilOpened) {
    SDWholeDisk card = sampleCard("disk4");
    card.partitions = {{"disk4s1", "Windows_FAT_32", "boot", 536'900'000, "/media/boot"},
                       {"disk4s2", "Linux", "", 0, ""}};
    fields.isExpanded = true;
    show(card);
    EXPECT_THAT(texts(), Contains("2 partitions"));
    EXPECT_THAT(texts(), Not(Contains("disk4s1")));
    press(1);
    EXPECT_THAT(texts(), IsSupersetOf({"disk4s1", "boot", "Windows_FAT_32 · /media/boot", "536.9 MB",
                                       "disk4s2", "Linux", "Partition", "Unknown size"}));

    card.partitions.pop_back();
    show(card);
    EXPECT_THAT(texts(), Contains("disk4s1")) << "it stays open while the disk stays the same";
    EXPECT_THAT(texts(), Not(Contains("disk4s2")));

    show(sampleCard("disk5"));
    EXPECT_THAT(texts(), Not(Contains("No child partitions or volumes were reported.")));
    press(1);
    EXPECT_THAT(texts(), Contains("No child partitions or volumes were reported."));
}

}  // namespace tessel
