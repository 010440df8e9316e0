#include "platform/BlockDevice.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/loop.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>

#include "platform/linux/BlockDescriptor.h"
#include "platform/linux/LoopDevice.h"
#include "tests/support/TemporaryFolder.h"

namespace tessel {

class LockedBlockDeviceTests : public testing::Test {
  protected:
    void SetUp() override {
        if (!LoopDevice::isAvailable()) GTEST_SKIP() << "needs loop devices";
    }

    std::filesystem::path mediumFile(const std::string& name) const {
        const auto file = folder.write(name, "");
        std::filesystem::resize_file(file, 1 << 20);
        return file;
    }

    static FileDescriptor openReadWrite(const std::filesystem::path& path) {
        return FileDescriptor(open(path.c_str(), O_RDWR | O_CLOEXEC));
    }

    TemporaryFolder folder;
};

TEST_F(LockedBlockDeviceTests, aDeviceThatSomebodyElseLockedIsBusy) {
    const LoopDevice loop({.file = mediumFile("card")});
    const FileDescriptor other = openReadWrite(loop.path());
    ASSERT_TRUE(lockExclusively(other.get()).isSuccess());
    EXPECT_EQ(makeBlockDevice(openReadWrite(loop.path()))->blockSize().error, EBUSY);
    EXPECT_EQ(makeBlockDevice(openReadWrite(loop.path()))->blockCount().error, EBUSY);
}

TEST_F(LockedBlockDeviceTests, theDeviceIsLockedWhileItIsOpen) {
    const LoopDevice loop({.file = mediumFile("card")});
    const FileDescriptor other = openReadWrite(loop.path());
    {
        const auto device = makeBlockDevice(openReadWrite(loop.path()));
        EXPECT_EQ(device->blockSize().value, 512U);
        EXPECT_EQ(lockExclusively(other.get()).error, EBUSY);
    }
    EXPECT_TRUE(lockExclusively(other.get()).isSuccess());
}

TEST_F(LockedBlockDeviceTests, blocksAreCountedInTheirOwnSize) {
    for (const uint32_t blockSize : {512U, 4096U}) {
        const LoopDevice loop({.file = mediumFile("card"), .blockSize = blockSize});
        const auto device = makeBlockDevice(openReadWrite(loop.path()));
        EXPECT_EQ(device->blockSize().value, blockSize);
        EXPECT_EQ(device->blockCount().value, (1 << 20) / blockSize);
    }
}

TEST_F(LockedBlockDeviceTests, anotherMediumInTheSameDeviceIsNoticed) {
    const FileDescriptor control = openReadWrite("/dev/loop-control");
    // Whoever else looks for a free slot at this moment is given a lower one.
    const int number = ioctl(control.get(), LOOP_CTL_ADD, 1000 + getpid() % 1000);
    ASSERT_GE(number, 1000);
    const auto slot = "/dev/loop" + std::to_string(number);
    auto device = makeBlockDevice(openReadWrite(slot));
    EXPECT_TRUE(device->confirmSameMedium().isSuccess());

    const FileDescriptor card = openReadWrite(mediumFile("card"));
    loop_config insertion{};
    insertion.fd = static_cast<uint32_t>(card.get());
    insertion.info.lo_flags = LO_FLAGS_AUTOCLEAR;
    ioctl(openReadWrite(slot).get(), LOOP_CONFIGURE, &insertion);
    EXPECT_FALSE(device->confirmSameMedium().isSuccess());
    device.reset();
    ioctl(control.get(), LOOP_CTL_REMOVE, number);
}

}  // namespace tessel
