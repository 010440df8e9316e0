#include "utilities/linux/LinuxDiskUtility.h"

#include <gmock/gmock.h>

#include <iterator>
#include <sstream>

#include "foundation/Errors.h"
#include "tests/support/DescribedMachine.h"
#include "tests/support/DescribedSystem.h"
#include "utilities/CommandLine.h"
#include "utilities/DiskUtility.h"

namespace tessel {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using EjectOutcome = BlockSystem::EjectOutcome;

const std::string notEjected = "The image was written, but the SD card could not be ejected. ";

}  // namespace

/// Has a card in the laptop's own slot as disk7, with one volume that the desktop mounted.
class LinuxDiskUtilityTests : public testing::Test {
  protected:
    std::string failureOf(void (LinuxDiskUtility::*action)(const std::string&)) {
        try {
            (disks.*action)("disk7");
            return "";
        } catch (const PlatformError& error) {
            return error.localizedDescription();
        }
    }
    std::string unmount() { return failureOf(&LinuxDiskUtility::unmount); }
    std::string eject() { return failureOf(&LinuxDiskUtility::eject); }
    /// Moves the card into a reader that can eject.
    void useReaderWithMechanism() {
        for (const char* name : {"mmcblk0", "mmcblk0p1"}) {
            std::string& path = system.named(name).path;
            path.replace(path.find("/mmc_host/"), 1, "/usb1/");
            path.erase(path.find("mmc_host/"), 9);
        }
    }
    std::chrono::seconds elapsed() const {
        return std::chrono::duration_cast<std::chrono::seconds>(system.time.time_since_epoch());
    }
    void mountWhileWaiting() {
        system.onWait = [this] {
            mountByDesktop();
            system.onWait = nullptr;
        };
    }
    void mountByDesktop() { volume.mounts.push_back({.target = "/media/ada/NEW", .isByUDisks = true}); }

    DescribedSystem system{
        DescribedMachine::read(TESSEL_DESCRIBED_MACHINES "/laptop-sd-card.machine").snapshot};
    KernelDevice& volume = system.named("mmcblk0p1");
    LinuxDiskUtility disks{system};
};

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

TEST_F(LinuxDiskUtilityTests, aRefusedUnmountCountsOnlyWhileSomethingIsMounted) {
    system.onUnmount = [](KernelDevice& device) {
        device.mounts.clear();
        throw PlatformError("Disk", EINVAL, "Somebody else unmounted it.");
    };
    EXPECT_EQ(eject(), "");

    mountByDesktop();
    system.calls.clear();
    system.onUnmount = [](KernelDevice&) { throw PlatformError("Disk", EPERM, "User canceled."); };
    EXPECT_EQ(eject(), notEjected + "User canceled.");
    EXPECT_THAT(system.calls, ElementsAre("unmount mmcblk0p1")) << "nobody is asked twice";
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

TEST_F(LinuxDiskUtilityTests, theDiskIsJudgedAgainBetweenUnmountingAndEjecting) {
    useReaderWithMechanism();
    system.onEject = [this] {
        volume.mounts.push_back({.target = "/srv", .isByUDisks = false});
        return EjectOutcome::busy;
    };
    EXPECT_THAT(eject(), HasSubstr("is protected"));
    EXPECT_EQ(std::ranges::count(system.calls, "eject mmcblk0"), 1);
}

TEST_F(LinuxDiskUtilityTests, aBusyMechanismIsAskedAgain) {
    useReaderWithMechanism();
    system.onEject = [this] {
        return std::ranges::count(system.calls, "eject mmcblk0") > 1 ? EjectOutcome::ejected
                                                                     : EjectOutcome::busy;
    };
    EXPECT_EQ(eject(), "");
    EXPECT_THAT(system.calls, ElementsAre("unmount mmcblk0p1", "flush", "eject mmcblk0", "wait", "flush",
                                          "eject mmcblk0", "wait"));
}

TEST_F(LinuxDiskUtilityTests, aMechanismThatStaysBusyIsGivenUp) {
    useReaderWithMechanism();
    system.onEject = [] { return EjectOutcome::busy; };
    EXPECT_EQ(eject(), notEjected + "Resource busy: another program or file system uses disk7.");
    EXPECT_LE(elapsed(), std::chrono::seconds(5));
}

TEST_F(LinuxDiskUtilityTests, theDriveOfTwoReadersIsNeverEjected) {
    useReaderWithMechanism();
    const KernelDevice card = system.named("mmcblk0");
    KernelDevice other = card;
    other.name = "sdz";
    other.path = "/sys/devices/usb2/block/sdz";
    system.snapshot.devices.push_back(other);
    for (KernelDevice& device : system.snapshot.devices)
        device.udisks.drive = "/drives/Generic";
    EXPECT_EQ(eject(), "");
    EXPECT_THAT(system.calls, ElementsAre("unmount mmcblk0p1", "flush", "wait"))
        << "as in a slot without a mechanism";
}

TEST_F(LinuxDiskUtilityTests, whatIsActivatedWhileAllIsFlushedIsNotEjected) {
    useReaderWithMechanism();
    for (const auto flushingTime : {0, 100}) {
        volume.holders.clear();
        system.onFlush = [&] {
            volume.holders = {"dm-0"};
            system.time += std::chrono::seconds(flushingTime);
        };
        EXPECT_THAT(eject(), HasSubstr("is part of a volume group"));
        EXPECT_THAT(system.calls, Not(Contains("eject mmcblk0")));
    }
}

TEST_F(LinuxDiskUtilityTests, whatIsActivatedAfterTheWriteIsWaitedForButNeverCalledSafe) {
    const auto activateAt = [this](std::chrono::seconds from, std::chrono::seconds to) {
        system.onWait = [this, from = elapsed() + from, to = elapsed() + to] {
            volume.holders.assign(elapsed() >= from && elapsed() < to, "dm-0");
        };
    };
    using std::chrono::seconds;
    for (const char* kind : {"LVM2_member", "crypto_LUKS"}) {
        volume.udisks.fileSystem = kind;
        const auto begin = elapsed();
        activateAt(seconds(3), seconds(20));
        EXPECT_EQ(eject(), "");
        EXPECT_GE(elapsed() - begin, seconds(20)) << kind;
    }
    for (const auto readingTime : {10, 3000}) {
        system.readingTime = std::chrono::milliseconds(readingTime);
        volume.holders.clear();
        activateAt(seconds(3), seconds(1000));
        const auto begin = elapsed();
        EXPECT_THAT(eject(), HasSubstr("is part of a volume group"));
        EXPECT_LE(elapsed() - begin, seconds(50)) << "the program would end it after 60";
    }
}

TEST_F(LinuxDiskUtilityTests, aBusyDeviceManagerMayYetActivateWhatWasWritten) {
    system.snapshot.isSettling = true;
    EXPECT_EQ(eject(), "");
    EXPECT_EQ(elapsed(), std::chrono::seconds(5)) << "it may be busy with something else";
    system.onWait = [this] {
        system.snapshot.isSettling = elapsed() < std::chrono::seconds(4);
        volume.holders.assign(elapsed() >= std::chrono::seconds(3), "md0");
    };
    EXPECT_THAT(eject(), HasSubstr("is part of a volume group"));
}

TEST_F(LinuxDiskUtilityTests, anotherMediumIsNotTheDiskAnyMore) {
    system.named("mmcblk0").sequenceNumber = 8;
    EXPECT_EQ(unmount(), "Could not find disk: disk7.");
    EXPECT_EQ(eject(), notEjected + "Could not find disk: disk7.");
    EXPECT_THAT(system.calls, IsEmpty());
}

TEST_F(LinuxDiskUtilityTests, aVolumeThatADesktopMountsMeanwhileIsUnmountedAgain) {
    mountWhileWaiting();
    EXPECT_EQ(eject(), "");
    EXPECT_THAT(system.calls,
                ElementsAre("unmount mmcblk0p1", "flush", "wait", "unmount mmcblk0p1", "flush", "wait"));

    system.readingTime = std::chrono::seconds(2);
    const auto begin = elapsed();
    EXPECT_EQ(eject(), "");
    EXPECT_EQ(elapsed() - begin, std::chrono::seconds(18)) << "a slow computer mounts late";
}

TEST_F(LinuxDiskUtilityTests, evenTheSlowestComputerIsWaitedFor) {
    system.readingTime = std::chrono::seconds(9);
    mountWhileWaiting();
    EXPECT_THAT(eject(), HasSubstr("Resource busy"));
}

TEST_F(LinuxDiskUtilityTests, aMediumThatIsGoneNeedsNoMoreWaiting) {
    KernelDevice& card = system.named("mmcblk0");
    const uint64_t size = card.sizeBytes;
    system.onWait = [&card] { card.sizeBytes = 0; };
    EXPECT_EQ(eject(), "");
    card.sizeBytes = size;
    system.calls.clear();
    mountByDesktop();
    useReaderWithMechanism();
    system.onEject = [&card] {
        card.sizeBytes = 0;
        return EjectOutcome::ejected;
    };
    EXPECT_EQ(eject(), "");
    EXPECT_THAT(system.calls, ElementsAre("unmount mmcblk0p1", "flush", "eject mmcblk0"));
}

TEST_F(LinuxDiskUtilityTests, aMediumThatComesBackUnderAnotherNumberIsWatchedButNotTouched) {
    useReaderWithMechanism();
    system.onEject = [this] {
        KernelDevice& card = system.named("mmcblk0");
        card.sequenceNumber = card.sequenceNumberAfterwards = 8;
        card.udisks.sequenceNumber = 8;
        mountByDesktop();
        return EjectOutcome::ejected;
    };
    EXPECT_EQ(eject(), notEjected + "Resource busy: a volume on disk7 keeps being remounted.");
    system.onWait = [this] { volume.mounts.clear(); };
    KernelDevice& card = system.named("mmcblk0");
    card.sequenceNumber = card.sequenceNumberAfterwards = 7;
    card.udisks.sequenceNumber = 7;
    volume.mounts.clear();
    system.calls.clear();
    EXPECT_EQ(eject(), "");
    EXPECT_THAT(system.calls, ElementsAre("flush", "eject mmcblk0", "wait"));
}

TEST_F(LinuxDiskUtilityTests, aDiskThatIsLockedMeanwhileIsNeitherEjectedNorCalledSafe) {
    useReaderWithMechanism();
    system.onFlush = [this] { volume.isLocked = true; };
    EXPECT_EQ(eject(), notEjected + "Resource busy: another program is working on disk7.");
    EXPECT_THAT(system.calls, Not(Contains("eject mmcblk0")));

    volume.isLocked = false;
    system.onFlush = nullptr;
    system.onWait = [this] { volume.isLocked = true; };
    EXPECT_EQ(eject(), notEjected + "Resource busy: another program is working on disk7.");
}

TEST_F(LinuxDiskUtilityTests, aMediumThatWasEjectedAndStaysMayBeMountedAgain) {
    useReaderWithMechanism();
    mountWhileWaiting();
    EXPECT_EQ(eject(), "");
    EXPECT_THAT(system.calls, ElementsAre("unmount mmcblk0p1", "flush", "eject mmcblk0", "wait",
                                          "unmount mmcblk0p1", "flush", "eject mmcblk0", "wait"));
}

TEST_F(LinuxDiskUtilityTests, aMechanismThatFailsIsNoneWhenNothingIsMounted) {
    useReaderWithMechanism();
    system.onEject = [] { return EjectOutcome::impossible; };
    EXPECT_EQ(eject(), "");

    system.onEject = [this] {
        mountByDesktop();
        return EjectOutcome::impossible;
    };
    EXPECT_THAT(eject(), HasSubstr("Resource busy"));
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
