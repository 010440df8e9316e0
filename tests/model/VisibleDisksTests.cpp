#include "model/VisibleDisks.h"

#include <gtest/gtest.h>

#include "tests/support/SampleDisks.h"

namespace tessel {

namespace {

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

TEST(VisibleDisksTests, eachFieldOrdersInBothDirections) {
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

TEST(VisibleDisksTests, onlyPhysicalCardsAreShownUnlessAllAreWanted) {
    auto copy = sampleCard("disk5", "SD Card");
    copy.isPhysical = false;
    const std::vector<SDWholeDisk> disks{copy, onBus(sampleCard("disk6", "Stick"), "USB"),
                                         sampleCard("disk7", "SD Card")};
    const auto shown = visibleDisks(disks, false, DiskSortField::disk, true);
    EXPECT_EQ(shown, std::vector{disks.back()});
}

}  // namespace tessel
