#include <gmock/gmock.h>

#include <iterator>
#include <sstream>

#include "tests/utilities/LinuxDiskUtilityTest.h"
#include "utilities/CommandLine.h"
#include "utilities/DiskUtility.h"

namespace tessel {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

using LinuxDiskUtilityTests = LinuxDiskUtilityTest;

TEST_F(LinuxDiskUtilityTests, everyMountIsUnmounted) {
    mountByDesktop();
    system.named("mmcblk0").mounts.push_back({.target = "/run/media/ada/WHOLE", .isByUDisks = true});
    EXPECT_EQ(unmount(), "");
    EXPECT_THAT(system.calls, ElementsAre("unmount mmcblk0", "unmount mmcblk0p1", "unmount mmcblk0p1"));
}

TEST_F(LinuxDiskUtilityTests, aSlowUnmountIsNoFailure) {
    system.unmountingTime = std::chrono::seconds(20);
    EXPECT_EQ(unmount(), "");
    mountByDesktop();
    EXPECT_EQ(eject(), "");
}

TEST_F(LinuxDiskUtilityTests, aMountThatIsMarkedLateIsUnmountedAllTheSame) {
    volume.mounts.front().isByUDisks = false;
    system.readingTime = std::chrono::seconds(2);
    system.onWait = [this] { volume.mounts.front().isByUDisks = elapsed() >= std::chrono::seconds(4); };
    EXPECT_EQ(unmount(), "");
}

TEST_F(LinuxDiskUtilityTests, anUnmountThatLeavesAMountHasFailed) {
    system.onUnmount = [](KernelDevice&) {};
    EXPECT_THAT(unmount(), HasSubstr("Resource busy"));
    EXPECT_THAT(eject(), HasSubstr("Resource busy"));
    EXPECT_THAT(system.calls, Not(Contains("flush")));
}

TEST_F(LinuxDiskUtilityTests, aLockIsWaitedForAndRespectedWhenItLasts) {
    volume.isLocked = true;
    for (const auto readingTime : {10, 700}) {
        system.readingTime = std::chrono::milliseconds(readingTime);
        const auto begin = elapsed();
        EXPECT_EQ(eject(), notEjected + "Resource busy: another program is working on disk7.");
        EXPECT_THAT(system.calls, testing::Each("wait"));
        EXPECT_LE(elapsed() - begin, std::chrono::seconds(4)) << "the clock decides, not the attempts";
    }

    system.onWait = [this] { volume.isLocked = false; };
    EXPECT_EQ(unmount(), "");
    EXPECT_EQ(system.calls.back(), "unmount mmcblk0p1");
}

TEST_F(LinuxDiskUtilityTests, anotherMediumIsNotTheDiskAnyMore) {
    system.named("mmcblk0").sequenceNumber = 8;
    EXPECT_EQ(unmount(), "Could not find disk: disk7.");
    EXPECT_EQ(eject(), notEjected + "Could not find disk: disk7.");
    EXPECT_THAT(system.calls, IsEmpty());
}

TEST_F(LinuxDiskUtilityTests, anythingButFourCommandsIsWrongUsage) {
    for (const std::string command : {"", "list", "eject", "unmountDisk force", "unmountDisk /dev/disk7",
                                      "info -plist disk7", "eject /dev/disk7s1"}) {
        SCOPED_TRACE(command);
        std::istringstream words(command);
        const std::vector<std::string> arguments{std::istream_iterator<std::string>(words), {}};
        std::ostringstream output;
        std::ostringstream errors;
        EXPECT_EQ(runDiskUtility(arguments, disks, output, errors), wrongUsage);
        EXPECT_THAT(errors.str(), testing::StartsWith("Usage: diskutil list -plist |"));
    }
    EXPECT_THAT(system.calls, IsEmpty());
}

}  // namespace tessel
