// The texts that the records of disks and partitions compose from their fields.

#include <gtest/gtest.h>

#include "model/SDWholeDisk.h"

namespace tessel {

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

TEST(DiskRecordTests, aDiskSaysWhatIsUnknown) {
    SDWholeDisk disk;
    EXPECT_EQ(disk.capabilitySummary(),
              "Unknown location · Virtual or unavailable · Read-only or unknown · Details unavailable");
    disk.isInternal = true;
    EXPECT_EQ(disk.locationText(), "Internal");
}

}  // namespace tessel
