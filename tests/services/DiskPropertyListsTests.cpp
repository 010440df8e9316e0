#include "services/DiskPropertyLists.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "foundation/Errors.h"
#include "model/TesselError.h"

namespace tessel {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::UnorderedElementsAre;

namespace {

std::string propertyList(const std::string& content) {
    return R"(<?xml version="1.0" encoding="UTF-8"?><plist version="1.0">)" + content + "</plist>";
}

DiskList listOf(const std::string& entries) {
    return parseDiskList(propertyList("<dict>" + entries + "</dict>"));
}

SDWholeDisk infoOf(const std::string& entries, const DiskLayout* layout = nullptr) {
    return parseDiskInfo(propertyList("<dict>" + entries + "</dict>"), "disk4", layout).value();
}

}  // namespace

TEST(DiskPropertyListsTests, identifiersAreTheUnionOfAllListsInOrder) {
    const DiskList onlyAllDisks = listOf(R"(<key>AllDisks</key><array>
        <string>disk4</string><string>disk4s1</string><string>disk0</string><string>disk0s1</string></array>)");
    EXPECT_THAT(onlyAllDisks.identifiers, ElementsAre("disk0", "disk4"));
    EXPECT_THAT(onlyAllDisks.layouts, IsEmpty());

    const DiskList several = listOf(R"(
        <key>WholeDisks</key><array><string>disk10</string><string>disk2</string></array>
        <key>AllWholeDisks</key><array><string>disk7</string><integer>8</integer></array>
        <key>AllDisks</key><string>disk9</string>
        <key>AllDisksAndPartitions</key><array>
            <dict><key>DeviceIdentifier</key><string>disk3</string></dict>
            <dict><key>DeviceIdentifier</key><string>disk2</string></dict>
            <dict><key>DeviceIdentifier</key><string>disk5s1</string></dict>
            <dict><key>DeviceIdentifier</key><string></string></dict>
            <dict/></array>)");
    EXPECT_THAT(several.identifiers, ElementsAre("disk2", "disk3", "disk10"));
    EXPECT_THAT(several.layouts,
                UnorderedElementsAre(Pair("disk2", DiskLayout()), Pair("disk3", DiskLayout()),
                                     Pair("disk5s1", DiskLayout())));
}

TEST(DiskPropertyListsTests, aLayoutHoldsVolumesNestedInContainersInOneList) {
    const DiskList list = listOf(R"(<key>AllDisksAndPartitions</key><array><dict>
        <key>DeviceIdentifier</key><string>disk4</string>
        <key>Content</key><string></string><key>PartitionMapType</key><string>GUID_partition_scheme</string>
        <key>Size</key><string>large</string><key>TotalSize</key><integer>64000000000</integer>
        <key>Internal</key><true/><key>OSInternal</key><false/>
        <key>APFSVolumes</key><array>
            <dict><key>DeviceIdentifier</key><string>disk4s10</string><key>APFSVolumeRole</key><string>Data</string></dict>
        </array>
        <key>Partitions</key><array>
            <dict><key>DeviceIdentifier</key><string>disk4s2</string><key>Content</key><string>Apple_APFS</string>
                <key>APFSVolumes</key><array>
                    <dict><key>DeviceIdentifier</key><string>disk4s3</string><key>Name</key><string>Home</string>
                        <key>MountPoint</key><string>/Volumes/Home</string></dict>
                    <dict><key>Volumes</key><array>
                        <dict><key>DeviceIdentifier</key><string>disk4s1</string>
                            <key>Size</key><string>1</string><key>TotalSize</key><integer>4096</integer></dict>
                    </array></dict></array></dict>
        </array></dict></array>)");
    ASSERT_NE(list.layoutOf("disk4"), nullptr);
    EXPECT_EQ(*list.layoutOf("disk4"),
              (DiskLayout{
                  .partitionScheme = "GUID_partition_scheme",
                  .partitions = {{.id = "disk4s1", .sizeBytes = 4096},
                                 {.id = "disk4s2", .content = "Apple_APFS"},
                                 {.id = "disk4s3", .volumeName = "Home", .mountPoint = "/Volumes/Home"},
                                 {.id = "disk4s10", .content = "Data"}},
                  .sizeBytes = 64'000'000'000,
                  .isInternal = false,
              }));
    EXPECT_EQ(list.layoutOf("disk5"), nullptr);
}

TEST(DiskPropertyListsTests, theLastEntryOfAnIdentifierCounts) {
    const DiskList list = listOf(R"(<key>AllDisksAndPartitions</key><array>
        <dict><key>DeviceIdentifier</key><string>disk4</string><key>Size</key><integer>1</integer></dict>
        <dict><key>DeviceIdentifier</key><string>disk4</string><key>Partitions</key><array>
            <dict><key>DeviceIdentifier</key><string>disk4s1</string><key>Size</key><integer>2</integer></dict>
            <dict><key>DeviceIdentifier</key><string>disk4s1</string><key>Size</key><integer>3</integer></dict>
        </array></dict></array>)");
    EXPECT_EQ(*list.layoutOf("disk4"), (DiskLayout{.partitions = {{.id = "disk4s1", .sizeBytes = 3}}}));
}

TEST(DiskPropertyListsTests, aSizeIsNeverTakenFromWhatIsNoCount) {
    const struct {
        const char* value;
        uint64_t size;
    } cases[] = {
        {"<integer>512</integer>", 512},
        {"<integer>0</integer>", 0},
        {"<real>512.9</real>", 512},
        {"<integer>9223372036854775807</integer>", 9'223'372'036'854'775'807},
        {"<integer>-1</integer>", 7},
        {"<integer>-9223372036854775808</integer>", 7},
        {"<real>-1</real>", 7},
        {"<real>1e300</real>", 7},
        {"<real>9223372036854775808</real>", 7},
        {"<real>nan</real>", 7},
        {"<real>inf</real>", 7},
        {"<string>512</string>", 7},
        {"<true/>", 7},
    };
    for (const auto& [value, size] : cases) {
        const SDWholeDisk disk =
            infoOf(std::string("<key>TotalSize</key>") + value + "<key>IOKitSize</key><integer>7</integer>");
        EXPECT_EQ(disk.sizeBytes, size) << value;
    }
}

TEST(DiskPropertyListsTests, aFlagIsReadFromEveryTypeThatCanSayYesOrNo) {
    const struct {
        const char* value;
        std::optional<bool> flag;
    } cases[] = {
        {"<true/>", true},
        {"<false/>", false},
        {"<integer>2</integer>", true},
        {"<integer>0</integer>", false},
        {"<real>0.5</real>", true},
        {"<real>0</real>", false},
        {"<string> Yes\n</string>", true},
        {"<string>TRUE</string>", true},
        {"<string>1</string>", true},
        {"<string>No</string>", false},
        {"<string>false</string>", false},
        {"<string>0</string>", false},
        {"<string>maybe</string>", std::nullopt},
        {"<string></string>", std::nullopt},
        {"<array/>", std::nullopt},
    };
    for (const auto& [value, flag] : cases) {
        const std::string internal = std::string("<key>Internal</key>") + value;
        EXPECT_EQ(infoOf(internal).isInternal, flag) << value;
        EXPECT_EQ(infoOf(internal + "<key>OSInternalMedia</key><true/>").isInternal, flag.value_or(true))
            << value;
    }
}

TEST(DiskPropertyListsTests, everythingReportedIsRead) {
    const SDWholeDisk disk = infoOf(R"(
        <key>DeviceIdentifier</key><string>disk5</string><key>MediaName</key><string></string>
        <key>IORegistryEntryName</key><string>SD Card Reader Media</string>
        <key>TotalSize</key><integer>32000000000</integer><key>Size</key><integer>1</integer>
        <key>BusProtocol</key><string>USB</string><key>DeviceLocation</key><string> Slot </string>
        <key>Internal</key><false/><key>VirtualOrPhysical</key><string>physical</string>
        <key>WritableMedia</key><true/><key>Content</key><string>FDisk_partition_scheme</string>
        <key>Whole</key><false/><key>RemovableMedia</key><true/><key>Ejectable</key><true/>)");
    EXPECT_EQ(disk, (SDWholeDisk{
                        .id = "disk5",
                        .mediaName = "SD Card Reader Media",
                        .sizeBytes = 32'000'000'000,
                        .busProtocol = "USB",
                        .deviceLocation = " Slot ",
                        .partitionScheme = "FDisk_partition_scheme",
                        .isInternal = false,
                        .isRemovable = true,
                        .isEjectable = true,
                        .isWritable = true,
                        .isPhysical = true,
                        .hasDetailedInfo = true,
                    }));
}

TEST(DiskPropertyListsTests, whatIsNotReportedComesFromTheLayoutOrADefault) {
    SDWholeDisk expected = {
        .id = "disk4",
        .mediaName = "Unknown Media",
        .busProtocol = "Unknown bus",
        .deviceLocation = "Unknown",
        .isWhole = true,
        .isPhysical = true,
        .hasDetailedInfo = true,
    };
    EXPECT_EQ(infoOf(""), expected);

    const DiskLayout unknown;
    EXPECT_EQ(infoOf("<key>Content</key><string>Ignored</string>", &unknown), expected);

    const DiskLayout layout = {
        .partitionScheme = "GUID_partition_scheme",
        .partitions = {{.id = "disk4s1"}},
        .sizeBytes = 4096,
        .isInternal = true,
    };
    expected.partitionScheme = layout.partitionScheme;
    expected.partitions = layout.partitions;
    expected.sizeBytes = 4096;
    expected.isInternal = true;
    expected.deviceLocation = "Internal";
    EXPECT_EQ(infoOf("", &layout), expected);

    EXPECT_FALSE(infoOf("<key>DeviceIdentifier</key><string>disk4s1</string>").isWhole);
}

TEST(DiskPropertyListsTests, theLocationTellsWhetherADiskIsInternal) {
    const DiskLayout internal = {.isInternal = true};
    const struct {
        const char* entries;
        std::optional<bool> isInternal;
        const char* location;
    } cases[] = {
        {"<key>DeviceLocation</key><string>External</string>", false, "External"},
        {"<key>Location</key><string>an INTERNAL bay</string>", true, "an INTERNAL bay"},
        {"<key>Internal</key><true/><key>DeviceLocation</key><string>External</string>", true, "External"},
        {"<key>Internal</key><false/>", false, "External"},
        {"<key>DeviceLocation</key><string>Slot</string>", true, "Slot"},
    };
    for (const auto& [entries, isInternal, location] : cases) {
        const SDWholeDisk disk = infoOf(entries, &internal);
        EXPECT_EQ(disk.isInternal, isInternal) << entries;
        EXPECT_EQ(disk.deviceLocation, location) << entries;
    }
}

TEST(DiskPropertyListsTests, aDiskIsPhysicalUnlessSomethingSaysOtherwise) {
    const struct {
        const char* entries;
        bool isPhysical;
    } cases[] = {
        {"<key>VirtualOrPhysical</key><string>Virtual</string><key>Virtual</key><false/>", false},
        {"<key>VirtualOrPhysical</key><string>PHYSICAL</string><key>Virtual</key><true/>", true},
        {"<key>VirtualOrPhysical</key><string>Unknown</string>", false},
        {"<key>VirtualOrPhysical</key><string></string><key>IsVirtual</key><true/>", false},
        {"<key>Virtual</key><false/><key>MediaName</key><string>Disk Image</string>", true},
        {"<key>MediaName</key><string>My Disk Image</string>", false},
        {"<key>BusProtocol</key><string>Disk Image</string>", false},
        {"<key>DeviceLocation</key><string>Synthesized</string>", false},
        {"<key>MediaName</key><string>SD Card</string>", true},
    };
    for (const auto& [entries, isPhysical] : cases)
        EXPECT_EQ(infoOf(entries).isPhysical, isPhysical) << entries;
}

TEST(DiskPropertyListsTests, aDiskIsWritableOnlyWhenSomethingSaysSo) {
    const struct {
        const char* entries;
        bool isWritable;
    } cases[] = {
        {"<key>WritableMedia</key><false/><key>Writable</key><true/>", false},
        {"<key>WritableMedia</key><string>?</string><key>Writable</key><true/>", true},
        {"<key>ReadOnlyMedia</key><false/>", true},
        {"<key>ReadOnly</key><true/>", false},
        {"<key>WritableVolume</key><true/><key>ReadOnlyMedia</key><true/>", true},
        {"<key>ReadOnlyMedia</key><string>?</string>", false},
    };
    for (const auto& [entries, isWritable] : cases)
        EXPECT_EQ(infoOf(entries).isWritable, isWritable) << entries;
}

TEST(DiskPropertyListsTests, outputOfAnotherShapeIsRefusedInItsOwnWay) {
    const std::string rubbish = "diskutil: not found";
    EXPECT_THROW(static_cast<void>(parseDiskList(rubbish)), PlatformError);
    EXPECT_THROW(static_cast<void>(parseDiskInfo(rubbish, "disk4", nullptr)), PlatformError);

    const std::string list = propertyList("<array/>");
    EXPECT_EQ(parseDiskInfo(list, "disk4", nullptr), std::nullopt);
    try {
        static_cast<void>(parseDiskList(list));
        FAIL() << "an array was read as a disk list";
    } catch (const TesselError& error) {
        EXPECT_EQ(error.kind(), TesselError::Case::commandFailed);
        EXPECT_EQ(error.errorDescription(), "diskutil returned an unexpected property-list structure.");
    }
}

}  // namespace tessel
