#include <gmock/gmock.h>

#include "foundation/PropertyList.h"
#include "rehearsal/SimulatedReader.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/UtilityRun.h"

namespace tessel {

using testing::HasSubstr;
using Outcome = ReceivedDescriptor::Outcome;

/// Covers what no test of the services would notice.
class SimulatedUtilitiesTests : public testing::Test {
  protected:
    SimulatedUtilitiesTests() {
        reader.addDisk({.identifier = "disk4",
                        .mediaName = "SDHC Card",
                        .sizeBytes = uint64_t{1} << 30,
                        .partitions = {{.identifier = "disk4s1", .mountPoint = "/Volumes/BOOT"}}});
    }

    UtilityRun diskutil(const std::vector<std::string>& arguments) const {
        return UtilityRun::ofDiskUtility(
            {.executable = reader.utilities().diskUtility, .arguments = arguments});
    }
    UtilityRun authopen(const std::vector<std::string>& arguments = {"-stdoutpipe", "-o", "2",
                                                                     "/dev/rdisk4"}) const {
        return UtilityRun::ofAuthorizationUtility(
            {.executable = reader.utilities().authorizationUtility, .arguments = arguments});
    }

    TemporaryFolder folder;
    SimulatedReader reader{folder.path() / "reader", TESSEL_SIMULATED_PROGRAMS};
};

TEST_F(SimulatedUtilitiesTests, theListNamesPartitionsAndNestedVolumesInOrder) {
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

TEST_F(SimulatedUtilitiesTests, nothingButTheKnownCommandsForWholeDisksIsAnswered) {
    constexpr int wrongUsage = 64;
    for (const auto& arguments : std::vector<std::vector<std::string>>{{},
                                                                       {"list"},
                                                                       {"eject"},
                                                                       {"eject", "disk4"},
                                                                       {"eject", "/dev/disk4s1"},
                                                                       {"eject", "/dev/rdisk4"},
                                                                       {"eject", "force", "/dev/disk4"},
                                                                       {"info", "/dev/disk4"},
                                                                       {"unmountDisk", "/dev/disk4"}})
        EXPECT_EQ(diskutil(arguments).status, wrongUsage) << testing::PrintToString(arguments);

    for (const auto& arguments :
         std::vector<std::vector<std::string>>{{},
                                               {"/dev/rdisk4"},
                                               {"-stdoutpipe", "-o", "0", "/dev/rdisk4"},
                                               {"-stdoutpipe", "-o", "2", "/dev/disk4"},
                                               {"-stdoutpipe", "-o", "2", "/dev/rdisk4s1"},
                                               {"-stdoutpipe", "-o", "2", "/dev/rdisk"}}) {
        const UtilityRun run = authopen(arguments);
        EXPECT_EQ(run.status, wrongUsage) << testing::PrintToString(arguments);
        EXPECT_EQ(run.received.outcome, Outcome::closed);
    }
}

TEST_F(SimulatedUtilitiesTests, aCardIsOpenedExclusivelyWhereItIsABlockDevice) {
    if (!LoopDevice::isAvailable()) GTEST_SKIP() << "needs loop devices";
    UtilityRun first = authopen();
    ASSERT_EQ(first.received.outcome, Outcome::received) << first.errors;
    const UtilityRun second = authopen();
    EXPECT_EQ(second.received.outcome, Outcome::closed);
    EXPECT_THAT(second.errors, HasSubstr("resource busy"));
    first.received.descriptor.close();
    EXPECT_EQ(authopen().status, 0);
}

TEST_F(SimulatedUtilitiesTests, onlyFilesAndLoopDevicesAreMedia) {
    for (const char* target : {"/dev/null", "/dev", "/no/such/file"}) {
        std::filesystem::remove(reader.mediumPath("disk4"));
        std::filesystem::create_symlink(target, reader.mediumPath("disk4"));
        const UtilityRun run = authopen();
        EXPECT_EQ(run.status, 1) << target;
        EXPECT_EQ(run.received.outcome, Outcome::closed) << target;
    }
}

}  // namespace tessel
