#include "rehearsal/StandardMachine.h"

namespace tessel {

namespace {

SimulatedDisk systemDisk() {
    return {
        .identifier = "disk0",
        .mediaName = "Internal NVMe SSD 512",
        .sizeBytes = 500'277'792'768,
        .busProtocol = "PCI-Express",
        .deviceLocation = "Internal",
        .partitionScheme = "GUID_partition_scheme",
        .partitions =
            {{.identifier = "disk0s1", .content = "EFI", .volumeName = "EFI", .sizeBytes = 524'288'000},
             {.identifier = "disk0s2",
              .content = "Apple_APFS",
              .sizeBytes = 499'753'484'288,
              .volumes = {{.identifier = "disk0s2s1",
                           .volumeName = "System",
                           .sizeBytes = 15'032'385'536,
                           .mountPoint = "/"},
                          {.identifier = "disk0s2s2",
                           .volumeName = "Data",
                           .sizeBytes = 281'320'357'888,
                           .mountPoint = "/System/Volumes/Data"}}}},
        .isInternal = true,
        .isRemovable = false,
        .isEjectable = false,
        .medium = SimulatedDisk::Medium::none,
    };
}

SimulatedDisk diskImage() {
    return {
        .identifier = "disk2",
        .mediaName = "Disk Image",
        .sizeBytes = 2'147'483'648,
        .busProtocol = "Disk Image",
        .partitionScheme = "GUID_partition_scheme",
        .partitions = {{.identifier = "disk2s1",
                        .content = "Apple_HFS",
                        .volumeName = "Installer",
                        .sizeBytes = 2'147'442'688,
                        .mountPoint = "/Volumes/Installer"}},
        .isPhysical = false,
        .medium = SimulatedDisk::Medium::none,
    };
}

SimulatedDisk cardInUSBReader() {
    return {
        .identifier = usbReaderCard,
        .mediaName = "SDHC Card",
        .sizeBytes = 31'914'983'424,
        .partitions = {{.identifier = "disk4s1",
                        .content = "Windows_FAT_32",
                        .volumeName = "BOOT",
                        .sizeBytes = 268'435'456,
                        .mountPoint = "/Volumes/BOOT"},
                       {.identifier = "disk4s2", .content = "Linux", .sizeBytes = 31'642'353'664}},
    };
}

SimulatedDisk cardInNativeSlot() {
    return {
        .identifier = nativeSlotCard,
        .mediaName = "Built In SDXC Reader",
        .sizeBytes = 63'864'569'856,
        .busProtocol = "Secure Digital",
        .deviceLocation = "Internal",
        .partitions = {{.identifier = "disk5s1",
                        .content = "Windows_NTFS",
                        .volumeName = "CAMERA",
                        .sizeBytes = 63'847'792'640,
                        .mountPoint = "/Volumes/CAMERA"}},
        .isInternal = true,
    };
}

SimulatedDisk externalSSD() {
    return {
        .identifier = "disk6",
        .mediaName = "Portable SSD",
        .sizeBytes = 1'000'204'886'016,
        .partitionScheme = "GUID_partition_scheme",
        .partitions =
            {{.identifier = "disk6s1", .content = "EFI", .volumeName = "EFI", .sizeBytes = 209'715'200},
             {.identifier = "disk6s2",
              .content = "Apple_HFS",
              .volumeName = "Backup",
              .sizeBytes = 999'860'912'128,
              .mountPoint = "/Volumes/Backup"}},
        .isRemovable = false,
        .medium = SimulatedDisk::Medium::none,
    };
}

SimulatedDisk usbStick() {
    return {
        .identifier = "disk7",
        .mediaName = "Generic MassStorageClass",
        .sizeBytes = 15'728'640'000,
        .partitions = {{.identifier = "disk7s1",
                        .content = "Windows_FAT_32",
                        .volumeName = "STICK",
                        .sizeBytes = 15'727'591'424,
                        .mountPoint = "/Volumes/STICK"}},
        .medium = SimulatedDisk::Medium::none,
    };
}

}  // namespace

void addStandardMachine(SimulatedReader& reader) {
    for (const SimulatedDisk& disk :
         {systemDisk(), diskImage(), cardInUSBReader(), cardInNativeSlot(), externalSSD(), usbStick()})
        reader.addDisk(disk);
}

}  // namespace tessel
