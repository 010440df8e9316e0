#include "utilities/linux/LinuxRawDiskOpener.h"

#include <gmock/gmock.h>
#include <linux/blkpg.h>
#include <sys/ioctl.h>

#include <optional>

#include "foundation/Errors.h"
#include "platform/linux/BlockDescriptor.h"
#include "tests/support/DescribedSystem.h"
#include "tests/support/LoopDeviceTest.h"

namespace tessel {

using testing::HasSubstr;

/// A machine whose only card is the loop device that is opened for it.
class LinuxRawDiskOpenerTests : public LoopDeviceTest {
  protected:
    void SetUp() override {
        LoopDeviceTest::SetUp();
        if (IsSkipped()) return;
        loop.emplace(LoopDevice::Options{.file = mediumFile("medium", mediumSizeInBytes)});
        const uint64_t number = diskSequenceNumber(openReadWrite(loop->path()).get()).value;
        identifier = "disk" + std::to_string(number);
        card() = {.name = "sdb",
                  .path = "/sys/devices/usb1/block/sdb",
                  .sequenceNumber = number,
                  .sequenceNumberAfterwards = number,
                  .sizeBytes = mediumSizeInBytes,
                  .isRemovable = true,
                  .udisks = {.sequenceNumber = number}};
        system.onOpen = [this] { return openReadWrite(loop->path()); };
    }

    KernelDevice& card() { return system.snapshot.devices.front(); }

    /// Adds or deletes a partition that spans the whole loop device, if the kernel can.
    void changePartition(int operation) const {
        blkpg_partition partition{.start = 0, .length = mediumSizeInBytes, .pno = 1};
        blkpg_ioctl_arg argument{
            .op = operation, .flags = 0, .datalen = sizeof partition, .data = &partition};
        ioctl(openReadWrite(loop->path()).get(), BLKPG, &argument);
    }

    /// Returns the message of the failure to open, or nothing.
    std::string refusal() {
        try {
            LinuxRawDiskOpener(system).open(identifier);
            return "";
        } catch (const PlatformError& error) {
            return error.localizedDescription();
        }
    }

    static constexpr uint64_t mediumSizeInBytes = 1 << 20;

    std::optional<LoopDevice> loop;
    DescribedSystem system{
        {.devices =
             {{},
              {.name = "sda", .path = "/sys/devices/ata1/block/sda", .sequenceNumber = 1, .sizeBytes = 9}},
         .rootDevice = "sda"}};
    std::string identifier;
};

TEST_F(LinuxRawDiskOpenerTests, whatAnotherProgramLockedIsBusy) {
    const FileDescriptor other = openReadWrite(loop->path());
    ASSERT_TRUE(lockExclusively(other.get()).isSuccess());
    EXPECT_THAT(refusal(), HasSubstr("Resource busy"));
}

TEST_F(LinuxRawDiskOpenerTests, lockedAndReadOnlyDisksAreNotOpened) {
    system.snapshot.devices.push_back({.name = "sdb1", .path = card().path + "/sdb1"});
    KernelDevice& partition = system.snapshot.devices.back();
    for (KernelDevice* part : {&card(), &partition}) {
        part->isLocked = true;
        EXPECT_THAT(refusal(), HasSubstr("Resource busy")) << part->name;
        part->isLocked = false;
    }
    card().isReadOnly = true;
    EXPECT_THAT(refusal(), HasSubstr("Its write-protection switch is on"));
    EXPECT_THAT(system.calls, testing::Each("wait")) << "nobody was asked";
    card().isReadOnly = false;
    for (KernelDevice* part : {&card(), &partition}) {
        system.onOpen = [&] {
            part->isLocked = true;
            return openReadWrite(loop->path());
        };
        EXPECT_THAT(refusal(), HasSubstr("Resource busy"))
            << part->name << " locked while the user was asked";
        part->isLocked = false;
    }
    system.snapshot.isDiskLockedElsewhere = true;
    EXPECT_THAT(refusal(), HasSubstr("it can't be told whether that is " + identifier));
}

TEST_F(LinuxRawDiskOpenerTests, whatWasOpenedMustBeTheDiskThatWasAskedFor) {
    const std::string replaced = "The disk was replaced while it was being opened.";
    system.onOpen = [this] { return openReadWrite(folder.path() / "medium"); };
    EXPECT_EQ(refusal(), replaced) << "a file";

    const LoopDevice other({.file = mediumFile("other", mediumSizeInBytes)});
    system.onOpen = [&] { return openReadWrite(other.path()); };
    EXPECT_EQ(refusal(), replaced) << "another medium of the same size";

    changePartition(BLKPG_ADD_PARTITION);
    system.onOpen = [this] { return openReadWrite(loop->path().string() + "p1"); };
    EXPECT_EQ(refusal(), replaced) << "a partition that is as large as the disk";
    changePartition(BLKPG_DEL_PARTITION);

    system.onOpen = [this] { return openReadWrite(loop->path()); };
    card().sizeBytes *= 2;
    EXPECT_EQ(refusal(), replaced) << "another size";
}

TEST_F(LinuxRawDiskOpenerTests, theDiskIsJudgedAgainOnceTheUserAgreed) {
    const auto whileAsked = [this](auto change) {
        system.onOpen = [this, change] {
            change();
            return openReadWrite(loop->path());
        };
    };
    whileAsked([this] { card().mounts = {{.target = "/media/ada/CARD", .isByUDisks = true}}; });
    EXPECT_THAT(refusal(), HasSubstr("Resource busy"));
    card().mounts.clear();
    whileAsked([this] { card().bytesWritten = 512; });
    EXPECT_EQ(refusal(), "Another program is writing to this card.");
    whileAsked([this] { card().holders = {"dm-0"}; });
    EXPECT_THAT(refusal(), HasSubstr("is protected"));
    card().holders.clear();
    whileAsked([this] { card().sequenceNumber = card().sequenceNumberAfterwards = 1'000'000; });
    EXPECT_EQ(refusal(), "Could not find disk: " + identifier + ".");
}

}  // namespace tessel
