#include <gtest/gtest.h>

#include "model/SDWholeDisk.h"

namespace tessel {

TEST(DiskRecordTests, aDiskIsSummedUpInWords) {
    SDWholeDisk disk = {.id = "disk4", .mediaName = "SD Card Reader", .deviceLocation = "External"};
    EXPECT_EQ(disk.displaySummary(), "SD Card Reader · Unknown size · disk4");
    EXPECT_EQ(disk.capabilitySummary(),
              "External · Virtual or unavailable · Read-only or unknown · Details unavailable");
    EXPECT_EQ(disk.partitionSchemeText(), "Unknown partition map");
    EXPECT_EQ(disk.partitionCountText(), "No partitions reported");

    disk.sizeBytes = 31'914'983'424;
    disk.partitionScheme = " FDisk_partition_scheme\n";
    disk.partitions.resize(1);
    disk.isPhysical = disk.isWritable = disk.isRemovable = disk.isEjectable = disk.hasDetailedInfo = true;
    EXPECT_EQ(disk.displaySummary(), "SD Card Reader · 31.91 GB · disk4");
    EXPECT_EQ(disk.capabilitySummary(), "External · Physical · Writable · Removable · Ejectable");
    EXPECT_EQ(disk.partitionSchemeText(), "FDisk_partition_scheme");
    EXPECT_EQ(disk.partitionCountText(), "1 partition");

    disk.partitions.resize(3);
    EXPECT_EQ(disk.partitionCountText(), "3 partitions");
}

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
