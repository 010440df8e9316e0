#include <gmock/gmock.h>

#include "tests/utilities/LinuxDiskUtilityTest.h"

namespace tessel {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using EjectOutcome = BlockSystem::EjectOutcome;

using EjectionTests = LinuxDiskUtilityTest;

TEST_F(EjectionTests, aRefusedUnmountCountsOnlyWhileSomethingIsMounted) {
    system.onUnmount = [](KernelDevice& device) {
        device.mounts.clear();
        throw PlatformError(EINVAL, "Somebody else unmounted it.");
    };
    EXPECT_EQ(eject(), "");

    mountByDesktop();
    system.calls.clear();
    system.onUnmount = [](KernelDevice&) { throw PlatformError(EPERM, "User canceled."); };
    EXPECT_EQ(eject(), notEjected + "User canceled.");
    EXPECT_THAT(system.calls, ElementsAre("unmount mmcblk0p1")) << "nobody is asked twice";
}

TEST_F(EjectionTests, theDiskIsJudgedAgainBetweenUnmountingAndEjecting) {
    useReaderWithMechanism();
    system.onEject = [this] {
        volume.mounts.push_back({.target = "/srv", .isByUDisks = false});
        return EjectOutcome::busy;
    };
    EXPECT_THAT(eject(), HasSubstr("is protected"));
    EXPECT_EQ(std::ranges::count(system.calls, "eject mmcblk0"), 1);
}

TEST_F(EjectionTests, aBusyMechanismIsAskedAgain) {
    useReaderWithMechanism();
    system.onEject = [this] {
        return std::ranges::count(system.calls, "eject mmcblk0") > 1 ? EjectOutcome::ejected
                                                                     : EjectOutcome::busy;
    };
    EXPECT_EQ(eject(), "");
    EXPECT_THAT(system.calls, ElementsAre("unmount mmcblk0p1", "flush", "eject mmcblk0", "wait", "flush",
                                          "eject mmcblk0", "wait"));
}

TEST_F(EjectionTests, aMechanismThatStaysBusyIsGivenUp) {
    useReaderWithMechanism();
    system.onEject = [] { return EjectOutcome::busy; };
    EXPECT_EQ(eject(), notEjected + "Resource busy: another program or file system uses disk7.");
    EXPECT_LE(elapsed(), std::chrono::seconds(5));
}

TEST_F(EjectionTests, theDriveOfTwoReadersIsNeverEjected) {
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

TEST_F(EjectionTests, whatIsActivatedWhileAllIsFlushedIsNotEjected) {
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

TEST_F(EjectionTests, whatIsActivatedAfterTheWriteIsWaitedForButNeverCalledSafe) {
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

TEST_F(EjectionTests, aBusyDeviceManagerMayYetActivateWhatWasWritten) {
    system.snapshot.isSettling = true;
    EXPECT_EQ(eject(), "");
    EXPECT_EQ(elapsed(), std::chrono::seconds(5)) << "it may be busy with something else";
    system.onWait = [this] {
        system.snapshot.isSettling = elapsed() < std::chrono::seconds(4);
        volume.holders.assign(elapsed() >= std::chrono::seconds(3), "md0");
    };
    EXPECT_THAT(eject(), HasSubstr("is part of a volume group"));
}

TEST_F(EjectionTests, aVolumeThatADesktopMountsMeanwhileIsUnmountedAgain) {
    mountWhileWaiting();
    EXPECT_EQ(eject(), "");
    EXPECT_THAT(system.calls,
                ElementsAre("unmount mmcblk0p1", "flush", "wait", "unmount mmcblk0p1", "flush", "wait"));

    system.readingTime = std::chrono::seconds(2);
    const auto begin = elapsed();
    EXPECT_EQ(eject(), "");
    EXPECT_EQ(elapsed() - begin, std::chrono::seconds(24)) << "a slow computer mounts late";
}

TEST_F(EjectionTests, evenTheSlowestComputerIsWaitedFor) {
    system.readingTime = std::chrono::seconds(9);
    mountWhileWaiting();
    EXPECT_THAT(eject(), HasSubstr("Resource busy"));
}

TEST_F(EjectionTests, aMediumThatIsGoneNeedsNoMoreWaiting) {
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

TEST_F(EjectionTests, aMediumThatComesBackUnderAnotherNumberIsWatchedButNotTouched) {
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

TEST_F(EjectionTests, aDiskThatIsLockedMeanwhileIsNeitherEjectedNorCalledSafe) {
    useReaderWithMechanism();
    system.onFlush = [this] { volume.isLocked = true; };
    EXPECT_EQ(eject(), notEjected + "Resource busy: another program is working on disk7.");
    EXPECT_THAT(system.calls, Not(Contains("eject mmcblk0")));

    volume.isLocked = false;
    system.onFlush = nullptr;
    system.onWait = [this] { volume.isLocked = true; };
    EXPECT_EQ(eject(), notEjected + "Resource busy: another program is working on disk7.");
}

TEST_F(EjectionTests, aMediumThatWasEjectedAndStaysMayBeMountedAgain) {
    useReaderWithMechanism();
    mountWhileWaiting();
    EXPECT_EQ(eject(), "");
    EXPECT_THAT(system.calls, ElementsAre("unmount mmcblk0p1", "flush", "eject mmcblk0", "wait",
                                          "unmount mmcblk0p1", "flush", "eject mmcblk0", "wait"));
}

TEST_F(EjectionTests, aMechanismThatFailsIsNoneWhenNothingIsMounted) {
    useReaderWithMechanism();
    system.onEject = [] { return EjectOutcome::impossible; };
    EXPECT_EQ(eject(), "");

    system.onEject = [this] {
        mountByDesktop();
        return EjectOutcome::impossible;
    };
    EXPECT_THAT(eject(), HasSubstr("Resource busy"));
}

}  // namespace tessel
