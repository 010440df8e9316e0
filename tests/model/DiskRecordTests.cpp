#include <gtest/gtest.h>

#include "model/SDWholeDisk.h"

namespace tessel {

TEST(DiskRecordTests, theReportedLocationWinsOverTheFlag) {
    const struct {
        const char* reported;
        std::optional<bool> isInternal;
        const char* text;
    } cases[] = {
        {" External ", true, "External"},
        {" ", true, "Internal"},
        {"", false, "External"},
        {"", std::nullopt, "Unknown location"},
    };
    for (const auto& [reported, isInternal, text] : cases) {
        const SDWholeDisk disk = {.deviceLocation = reported, .isInternal = isInternal};
        EXPECT_EQ(disk.locationText(), text);
    }
}

TEST(DiskRecordTests, aPartitionSaysNothingTwice) {
    const struct {
        SDDiskPartition partition;
        const char* name;
        const char* detail;
    } cases[] = {
        {{}, "Unnamed Partition", "Partition"},
        {{.content = "efi", .volumeName = "EFI"}, "EFI", "Partition"},
        {{.content = " Apple_APFS ", .volumeName = " "}, "Apple_APFS", "Partition"},
        {{.content = "Linux", .volumeName = "root"}, "root", "Linux"},
        {{.content = "Linux", .volumeName = "root", .mountPoint = "/media/root"},
         "root",
         "Linux · /media/root"},
        {{.mountPoint = "/media/x"}, "Unnamed Partition", "/media/x"},
    };
    for (const auto& [partition, name, detail] : cases) {
        EXPECT_EQ(partition.displayName(), name);
        EXPECT_EQ(partition.detailText(), detail);
    }
}

}  // namespace tessel
