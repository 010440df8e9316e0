#include "utilities/linux/LinuxDisks.h"

#include <gmock/gmock.h>

#include "foundation/Errors.h"
#include "tests/support/DescribedMachine.h"
#include "tests/support/DescribedSystem.h"

namespace tessel {

namespace {

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using Ejection = BlockSystem::Ejection;

DescribedSystem systemOf(const std::string& machine) {
    const auto file = std::filesystem::path(TESSEL_DESCRIBED_MACHINES) / (machine + ".machine");
    return DescribedSystem(DescribedMachine::read(file).machine);
}

template <typename Action>
std::string failureOf(Action action) {
    try {
        action();
        return "";
    } catch (const PlatformError& error) {
        return error.localizedDescription();
    }
}

}  // namespace

/// Has a card in the laptop's own slot as disk7, with one volume that the desktop mounted.
class LinuxDisksTests : public testing::Test {
  protected:
    std::string unmount() {
        return failureOf([this] { disks.unmount("disk7"); });
    }
    std::string eject() {
        return failureOf([this] { disks.eject("disk7"); });
    }
    /// Moves the card into a reader that can eject.
    void useReaderWithMechanism() {
        for (const char* name : {"mmcblk0", "mmcblk0p1"}) {
            std::string& path = system.named(name).path;
            path.replace(path.find("/mmc_host/"), 1, "/usb1/");
            path.erase(path.find("mmc_host/"), 9);
        }
    }
    void mountByDesktop() { volume.mounts.push_back({.target = "/media/ada/NEW", .isByUDisks = true}); }

    DescribedSystem system = systemOf("laptop-sd-card");
    BlockDevice& volume = system.named("mmcblk0p1");
    LinuxDisks disks{system};
};

TEST_F(LinuxDisksTests, everyMountIsUnmounted) {
    mountByDesktop();
    system.named("mmcblk0").mounts.push_back({.target = "/run/media/ada/WHOLE", .isByUDisks = true});
    EXPECT_EQ(unmount(), "");
    EXPECT_THAT(system.calls, ElementsAre("unmount mmcblk0", "unmount mmcblk0p1", "unmount mmcblk0p1"));
}

TEST_F(LinuxDisksTests, anUnmountThatLeavesAMountHasFailed) {
    system.onUnmount = [](BlockDevice&) {};
    EXPECT_THAT(unmount(), HasSubstr("Resource busy"));
    EXPECT_THAT(eject(), HasSubstr("Resource busy"));
    EXPECT_THAT(system.calls, Not(Contains("flush")));
}

TEST_F(LinuxDisksTests, aRefusedUnmountCountsOnlyWhileSomethingIsMounted) {
    system.onUnmount = [](BlockDevice& device) {
        device.mounts.clear();
        throw PlatformError("Disk", EINVAL, "Somebody else unmounted it.");
    };
    EXPECT_EQ(eject(), "");

    mountByDesktop();
    system.calls.clear();
    system.onUnmount = [](BlockDevice&) { throw PlatformError("Disk", EPERM, "User canceled."); };
    EXPECT_EQ(eject(), "User canceled.");
    EXPECT_THAT(system.calls, ElementsAre("unmount mmcblk0p1")) << "nobody is asked twice";
}

TEST_F(LinuxDisksTests, aLockIsWaitedForAndRespectedWhenItLasts) {
    volume.isLocked = true;
    EXPECT_EQ(eject(), "Resource busy: another program is working on disk7.");
    EXPECT_THAT(system.calls, Each("wait"));

    system.onWait = [this] { volume.isLocked = false; };
    EXPECT_EQ(unmount(), "");
    EXPECT_EQ(system.calls.back(), "unmount mmcblk0p1");
}

TEST_F(LinuxDisksTests, aProtectedDiskIsNeitherUnmountedNorEjected) {
    volume.holders = {"dm-0"};
    const std::string expected =
        "disk7 (/dev/mmcblk0) is protected: it is part of a volume group, a RAID or an encrypted volume that "
        "is in use.";
    EXPECT_EQ(unmount(), expected);
    EXPECT_EQ(eject(), expected);
    EXPECT_THAT(system.calls, IsEmpty());
}

TEST_F(LinuxDisksTests, theDiskIsJudgedAgainBetweenUnmountingAndEjecting) {
    useReaderWithMechanism();
    system.onEject = [this] {
        volume.mounts.push_back({.target = "/srv", .isByUDisks = false});
        return Ejection::busy;
    };
    EXPECT_THAT(eject(), HasSubstr("is protected"));
    EXPECT_THAT(system.calls, ElementsAre("unmount mmcblk0p1", "flush", "eject mmcblk0"));
}

TEST_F(LinuxDisksTests, anotherMediumIsNotTheDiskAnyMore) {
    system.named("mmcblk0").sequenceNumber = 8;
    EXPECT_EQ(unmount(), "Could not find disk: disk7.");
    EXPECT_EQ(eject(), "Could not find disk: disk7.");
    EXPECT_THAT(system.calls, IsEmpty());
}

TEST_F(LinuxDisksTests, aVolumeThatADesktopMountsMeanwhileIsUnmountedAgain) {
    system.onWait = [this] {
        mountByDesktop();
        system.onWait = nullptr;
    };
    EXPECT_EQ(eject(), "");
    EXPECT_THAT(system.calls,
                ElementsAre("unmount mmcblk0p1", "flush", "wait", "unmount mmcblk0p1", "flush", "wait"));
}

TEST_F(LinuxDisksTests, aMediumThatIsGoneNeedsNoMoreWaiting) {
    useReaderWithMechanism();
    system.onEject = [this] {
        system.named("mmcblk0").sequenceNumber = 8;
        return Ejection::done;
    };
    EXPECT_EQ(eject(), "");
    EXPECT_THAT(system.calls, ElementsAre("unmount mmcblk0p1", "flush", "eject mmcblk0"));
}

TEST_F(LinuxDisksTests, aMediumThatWasEjectedAndStaysMayBeMountedAgain) {
    useReaderWithMechanism();
    system.onWait = [this] {
        mountByDesktop();
        system.onWait = nullptr;
    };
    EXPECT_EQ(eject(), "");
    EXPECT_THAT(system.calls, ElementsAre("unmount mmcblk0p1", "flush", "eject mmcblk0", "wait",
                                          "unmount mmcblk0p1", "flush", "eject mmcblk0", "wait"));
}

TEST_F(LinuxDisksTests, aMechanismThatFailsIsNoneWhenNothingIsMounted) {
    useReaderWithMechanism();
    system.onEject = [] { return Ejection::impossible; };
    EXPECT_EQ(eject(), "");

    system.onEject = [this] {
        mountByDesktop();
        return Ejection::impossible;
    };
    EXPECT_THAT(eject(), HasSubstr("Resource busy"));
}

}  // namespace tessel
