#include "model/DiskSorting.h"

#include <gmock/gmock.h>

#include "model/DiskTexts.h"
#include "tests/support/SampleDisks.h"

namespace tessel {

namespace {

using testing::ElementsAre;
using Identifiers = std::vector<std::string>;

SDWholeDisk onBus(SDWholeDisk disk, const std::string& bus) {
    disk.busProtocol = bus;
    return disk;
}

Identifiers order(const std::vector<SDWholeDisk>& disks, DiskSortField field, bool ascending) {
    Identifiers identifiers;
    for (const SDWholeDisk& disk : visibleDisks(disks, true, field, ascending))
        identifiers.push_back(disk.id);
    return identifiers;
}

}  // namespace

TEST(DiskSortingTests, eachFieldOrdersInBothDirections) {
    const std::vector<SDWholeDisk> disks{
        sampleCard("disk10", "Reader 2", 500), sampleCard("disk2", "reader 10", 500),
        onBus(sampleCard("disk3", " Alpha ", 900), "USB"), sampleCard("disk4", "Reader 2", 100)};
    struct Case {
        DiskSortField field;
        Identifiers ascending;
        Identifiers descending;
    };
    const Case cases[]{
        // Numbers in names and identifiers count by value, and case and outer spaces do not count.
        {DiskSortField::disk, {"disk3", "disk4", "disk10", "disk2"}, {"disk2", "disk10", "disk4", "disk3"}},
        // Equal sizes are ordered by identifier in either direction.
        {DiskSortField::size, {"disk4", "disk2", "disk10", "disk3"}, {"disk3", "disk2", "disk10", "disk4"}},
        // "SD Card|…" before "USB Storage|…"; of the same medium, bus and name the identifier decides.
        {DiskSortField::media, {"disk4", "disk10", "disk2", "disk3"}, {"disk3", "disk2", "disk4", "disk10"}},
    };
    for (const Case& one : cases) {
        EXPECT_EQ(order(disks, one.field, true), one.ascending) << static_cast<int>(one.field);
        EXPECT_EQ(order(disks, one.field, false), one.descending) << static_cast<int>(one.field);
    }
}

TEST(DiskSortingTests, onlyPhysicalIdentifiedCardsAreListedUnlessAllAreAskedFor) {
    SDWholeDisk virtualCard = sampleCard("disk5");
    virtualCard.isPhysical = false;
    SDWholeDisk readOnlyCard = sampleCard("disk6");
    readOnlyCard.isWritable = false;
    const std::vector<SDWholeDisk> disks{sampleFixedDisk("disk0"), onBus(sampleCard("disk3", "Stick"), "USB"),
                                         onBus(sampleCard("disk4", "My SDHC"), "USB"), virtualCard,
                                         readOnlyCard};
    Identifiers listed;
    for (const SDWholeDisk& disk : visibleDisks(disks, false, DiskSortField::disk, true))
        listed.push_back(disk.id);
    EXPECT_THAT(listed, ElementsAre("disk4", "disk6"));
    EXPECT_EQ(visibleDisks(disks, true, DiskSortField::disk, true).size(), disks.size());
}

TEST(DiskTextsTests, kindSymbolAndConnectionOfAMedium) {
    const auto disk = [](const std::string& name, const std::string& bus, bool isPhysical,
                         std::optional<bool> isInternal) {
        SDWholeDisk made = sampleCard("disk4", name);
        made.busProtocol = bus;
        made.isPhysical = isPhysical;
        made.isInternal = isInternal;
        return made;
    };
    struct Case {
        SDWholeDisk disk;
        std::string kind;
        std::string symbol;
        std::string connection;
    };
    const Case cases[]{
        {disk("Backup", " Disk Image ", false, false), "Disk Image", "doc.fill", "Disk Image"},
        {disk("Apple DISK IMAGE Media", "", true, true), "Disk Image", "doc.fill", "Unknown connection"},
        {disk("SD Card", "SD", false, false), "Virtual / Synthesized", "square.stack.3d.up.fill", "SD"},
        {disk("Reader", "Secure Digital", true, true), "SD Card", "sdcard.fill", "Secure Digital"},
        {disk("Stick", "usb 3", true, true), "USB Storage", "internaldrive.fill", "usb 3"},
        {disk("Stick", "USB", true, false), "USB Storage", "externaldrive.fill", "USB"},
        {disk("Drive", "SATA", true, true), "Internal Disk", "internaldrive.fill", "SATA"},
        {disk("Drive", "SATA", true, false), "External Disk", "externaldrive.fill", "SATA"},
        {disk("Drive", "\n", true, std::nullopt), "Physical Disk", "externaldrive.fill",
         "Unknown connection"},
    };
    for (const Case& one : cases) {
        EXPECT_EQ(mediaKindText(one.disk), one.kind) << one.disk.mediaName;
        EXPECT_EQ(mediaSymbol(one.disk), one.symbol) << one.disk.mediaName;
        EXPECT_EQ(connectionText(one.disk), one.connection) << one.disk.mediaName;
    }
}

}  // namespace tessel
