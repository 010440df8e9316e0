#include "services/DiskPropertyLists.h"

#include <gmock/gmock.h>

#include <fstream>
#include <map>
#include <sstream>

#include "foundation/Text.h"
#include "model/DiskTexts.h"

namespace tessel {

using testing::ElementsAre;
using testing::Pair;
using testing::UnorderedElementsAre;

namespace {

DiskList listOf(const std::string& report) {
    std::ifstream file(TESSEL_DISK_REPORTS + report + ".plist");
    return parseDiskList(std::string(std::istreambuf_iterator(file), {}));
}

std::vector<std::string> split(const std::string& text, char separator) {
    std::vector<std::string> parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, separator);)
        parts.push_back(trimmed(part));
    return parts;
}

}  // namespace

TEST(DiskPropertyListsTests, identifiersAreTheUnionOfAllListsInOrder) {
    const DiskList onlyAllDisks = listOf("all-disks-only");
    EXPECT_THAT(onlyAllDisks.identifiers, ElementsAre("disk0", "disk4"));
    EXPECT_THAT(onlyAllDisks.layouts, testing::IsEmpty());

    const DiskList several = listOf("several-lists");
    EXPECT_THAT(several.identifiers, ElementsAre("disk2", "disk3", "disk10"));
    EXPECT_THAT(several.layouts,
                UnorderedElementsAre(Pair("disk2", DiskLayout()), Pair("disk3", DiskLayout()),
                                     Pair("disk5s1", DiskLayout())));
}

TEST(DiskPropertyListsTests, aLayoutHoldsVolumesNestedInContainersInOneList) {
    const DiskList list = listOf("nested-volumes");
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

TEST(DiskPropertyListsTests, detailsAreReadAsTheTableSays) {
    const DiskLayout unknown;
    const DiskLayout internal = {.partitionScheme = "GUID_partition_scheme",
                                 .partitions = {{.id = "disk4s1"},
                                                {.id = "disk4s2", .content = "efi", .volumeName = "EFI"},
                                                {.id = "disk4s3", .content = " ext4 ", .volumeName = " "}},
                                 .sizeBytes = 4096,
                                 .isInternal = true};
    const auto word = [](bool is) { return std::string(is ? "yes" : "no"); };
    std::ifstream table(TESSEL_DISK_REPORTS "details.txt");
    int rows = 0;
    for (std::string line; std::getline(table, line);) {
        if (line.empty() || line.starts_with('#')) continue;
        SCOPED_TRACE(line);
        const auto columns = split(line, '|');
        const DiskLayout* layout = nullptr;
        std::string entries;
        for (const auto& said : split(columns.at(0), ';')) {
            if (said.starts_with("listed")) {
                layout = said == "listed" ? &unknown : &internal;
                continue;
            }
            const auto equals = said.find('=');
            const auto value = said.substr(equals + 1);
            entries += "<key>" + said.substr(0, equals) + "</key>" +
                       (value.starts_with('<') ? value : "<string>" + value + "</string>");
        }
        const auto info = R"(<plist version="1.0"><dict>)" + entries + "</dict></plist>";
        const SDWholeDisk disk = parseDiskInfo(info, "disk4", layout).value();
        std::vector<std::string> partitions;
        for (const auto& partition : disk.partitions)
            partitions.push_back(partition.displayName() + ", " + partition.detailText());
        const std::map<std::string, std::string> known = {
            {"id", disk.id},
            {"name", disk.mediaName},
            {"bus", disk.busProtocol},
            {"size", std::to_string(disk.sizeBytes)},
            {"internal", disk.isInternal ? word(*disk.isInternal) : "unknown"},
            {"location", disk.deviceLocation},
            {"physical", word(disk.isPhysical)},
            {"writable", word(disk.isWritable)},
            {"scheme", disk.partitionScheme},
            {"partitions", joined(partitions, "/")},
            {"whole", word(disk.isWhole)},
            {"removable", word(disk.isRemovable)},
            {"ejectable", word(disk.isEjectable)},
            {"traits", disk.capabilitySummary()},
            {"kind", mediaKindText(disk)},
            {"symbol", mediaSymbol(disk)},
            {"connection", connectionText(disk)},
        };
        EXPECT_TRUE(disk.hasDetailedInfo);
        EXPECT_FALSE(disk.systemName || disk.protectionReason);
        for (const auto& expected : split(columns.at(1), ';')) {
            const auto equals = expected.find('=');
            EXPECT_EQ(known.at(expected.substr(0, equals)), expected.substr(equals + 1));
        }
        ++rows;
    }
    EXPECT_GT(rows, 40);
}

}  // namespace tessel
