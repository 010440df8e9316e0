#include "model/DiskTexts.h"

#include <gtest/gtest.h>

#include <tuple>

#include "tests/support/SampleDisks.h"

namespace tessel {

TEST(DiskTextsTests, aMediumHasItsKindItsSymbolAndItsConnection) {
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

TEST(DiskTextsTests, anImageLiesOnTheDiskWhereItsPathBeginsWithAMountPoint) {
    const std::tuple<const char*, const char*, bool> cases[] = {
        {"/media/user/CARD", "/media/user/CARD/os.img", true},
        {"/media/user/CARD", "/media/user/CARD/old/os.img", true},
        {"/media/user/CARD", "/media/user/CARD2/os.img", false},
        {"/media/user/CARD", "/media/user/os.img", false},
        {"", "/media/user/CARD/os.img", false},
        {"\u2068/media/user/\u05e9\u2069", "/media/user/\u05e9/os.img", true},
    };
    for (const auto& [mountPoint, file, liesOnIt] : cases) {
        auto card = sampleCard("disk4");
        card.partitions = {{.id = "disk4s1"}, {.id = "disk4s2", .mountPoint = mountPoint}};
        EXPECT_EQ(imageOnDiskText({.url = file, .sizeBytes = 1}, card).has_value(), liesOnIt)
            << mountPoint << " " << file;
    }
}

TEST(DiskTextsTests, anEmptyTableSaysWhetherDisksAreHidden) {
    EXPECT_TRUE(emptyTableText(0).starts_with("No whole disks"));
    EXPECT_FALSE(emptyTableText(1).starts_with("No whole disks"));
}

}  // namespace tessel
