#include <gmock/gmock.h>

#include <fstream>

#include "services/DiskPropertyLists.h"
#include "tests/utilities/SimulatedReaderTest.h"

namespace tessel {

using testing::ElementsAre;
using testing::HasSubstr;

class SimulatedDiskutilTests : public SimulatedReaderTest {
  protected:
    SimulatedDiskutilTests() { addCard(); }

    DiskList list() { return parseDiskList(diskutil({"list", "-plist"}).output); }
};

TEST_F(SimulatedDiskutilTests, theListNamesPartitionsAndNestedVolumesInOrder) {
    reader.addDisk({.identifier = "disk10",
                    .mediaName = "Other",
                    .partitions = {{.identifier = "disk10s1", .volumes = {{.identifier = "disk10s1s1"}}}},
                    .medium = SimulatedDisk::Medium::none});
    const PropertyList list = parsePropertyList(diskutil({"list", "-plist"}).output);
    EXPECT_EQ(list.asDictionary()->at("AllDisks"),
              (PropertyList::List{"disk4", "disk4s1", "disk10", "disk10s1", "disk10s1s1"}));
    EXPECT_EQ(list.asDictionary()->at("WholeDisks"), (PropertyList::List{"disk4", "disk10"}));

    const PropertyList info = parsePropertyList(diskutil({"info", "-plist", "/dev/disk10"}).output);
    EXPECT_EQ(info.asDictionary()->at("MediaName"), "Other");
    EXPECT_FALSE(info.asDictionary()->contains("Partitions"));
}

TEST_F(SimulatedDiskutilTests, unmountingClearsTheMountPoints) {
    EXPECT_EQ(list().layoutOf("disk4")->partitions.front().mountPoint, "/Volumes/BOOT");
    EXPECT_EQ(diskutil({"unmountDisk", "force", "/dev/disk4"}).status, 0);
    EXPECT_EQ(list().layoutOf("disk4")->partitions.front().mountPoint, "");
}

TEST_F(SimulatedDiskutilTests, anEjectedDiskIsGoneUntilItIsPutBack) {
    EXPECT_EQ(diskutil({"eject", "/dev/disk4"}).status, 0);
    EXPECT_THAT(list().identifiers, ElementsAre());
    for (const auto& arguments : std::vector<std::vector<std::string>>{{"info", "-plist", "/dev/disk4"},
                                                                       {"unmountDisk", "force", "/dev/disk4"},
                                                                       {"eject", "/dev/disk4"}}) {
        const Run run = diskutil(arguments);
        EXPECT_EQ(run.status, 1);
        EXPECT_EQ(run.output, "");
        EXPECT_EQ(run.errors, "Could not find disk: disk4.\n");
    }
    EXPECT_EQ(authopen().status, 1);

    reader.reinsert("disk4");
    EXPECT_THAT(list().identifiers, ElementsAre("disk4"));
}

TEST_F(SimulatedDiskutilTests, aDiskRefusesWhatItIsToldTo) {
    reader.setBehaviour("disk4", {.refusesUnmount = "dissented by PID 42", .ejectFails = "stuck"});
    const Run unmount = diskutil({"unmountDisk", "force", "/dev/disk4"});
    EXPECT_EQ(unmount.status, 1);
    EXPECT_EQ(unmount.errors, "dissented by PID 42\n");
    const Run eject = diskutil({"eject", "/dev/disk4"});
    EXPECT_EQ(eject.status, 1);
    EXPECT_EQ(eject.errors, "stuck\n");
    EXPECT_EQ(list().layoutOf("disk4")->partitions.front().mountPoint, "/Volumes/BOOT");
}

TEST_F(SimulatedDiskutilTests, aSlowDiskDelaysTheNamedCommands) {
    constexpr double delay = 0.3;
    reader.setBehaviour("disk4", {.delays = {{"info", delay}, {"list", delay}}});
    EXPECT_GE(diskutil({"info", "-plist", "/dev/disk4"}).duration.count(), delay);
    EXPECT_GE(diskutil({"list", "-plist"}).duration.count(), delay);
}

TEST_F(SimulatedDiskutilTests, otherArgumentsAreWrongUsageAndChangeNothing) {
    for (const auto& arguments : std::vector<std::vector<std::string>>{
             {},
             {"list"},
             {"list", "-plist", "/dev/disk4"},
             {"info", "-plist", "disk4"},
             {"info", "-plist", "/dev/rdisk4"},
             {"info", "-plist", "/dev/disk4s1"},
             {"info", "-plist", "/dev/disk"},
             {"eject", "/dev/../disk4"},
             {"eject", "force", "/dev/disk4"},
             {"unmountDisk", "/dev/disk4"},
             {"eraseDisk", "force", "/dev/disk4"},
         }) {
        const Run run = diskutil(arguments);
        EXPECT_EQ(run.status, 64);
        EXPECT_THAT(run.errors, HasSubstr("Usage: diskutil"));
        EXPECT_EQ(run.output, "");
    }
    EXPECT_THAT(list().identifiers, ElementsAre("disk4"));
}

TEST_F(SimulatedDiskutilTests, unreadableDetailsAreReported) {
    std::ofstream(folder / "disk4/details.plist") << "<plist><dict>";
    const Run run = diskutil({"info", "-plist", "/dev/disk4"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.errors, "The property list could not be read: it is malformed.\n");
}

TEST_F(SimulatedDiskutilTests, everyRunIsLoggedInOrder) {
    diskutil({"list", "-plist"});
    diskutil({"eject", "/dev/disk9"});
    diskutil({"nonsense"});
    authopen();
    EXPECT_THAT(reader.calls(), ElementsAre("diskutil list -plist", "diskutil eject /dev/disk9",
                                            "diskutil nonsense", "authopen -stdoutpipe -o 2 /dev/rdisk4"));
}

}  // namespace tessel
