#include "platform/BlockDevice.h"

#include <linux/loop.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "platform/AlignedBuffer.h"
#include "platform/linux/BlockDescriptor.h"
#include "tests/support/LoopDeviceTest.h"
#include "tests/support/SleepingComputer.h"

namespace tessel {

using LockedBlockDeviceTests = LoopDeviceTest;

TEST_F(LockedBlockDeviceTests, aCharacterDeviceWithTheNumberOfABlockDeviceIsRefused) {
    const LoopDevice loop({.file = mediumFile("card")});
    struct stat status{};
    ASSERT_EQ(stat(loop.path().c_str(), &status), 0);
    const auto other = folder.path() / "other";
    ASSERT_EQ(mknod(other.c_str(), S_IFCHR, status.st_rdev), 0);
    EXPECT_FALSE(isWholeBlockDevice(openReadWrite(other, O_PATH).get()));
}

TEST_F(LockedBlockDeviceTests, theDeviceIsLockedWhileItIsOpen) {
    const LoopDevice loop({.file = mediumFile("card")});
    const FileDescriptor other = openReadWrite(loop.path());
    {
        const auto device = makeBlockDevice(openReadWrite(loop.path()));
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

TEST_F(LockedBlockDeviceTests, whatElseHappensToTheMediumIsNoticed) {
    const LoopDevice loop({.file = mediumFile("card")});
    const AlignedBuffer buffer(4096, std::align_val_t(4096));
    const auto bytes = buffer.first(4096);
    {
        const auto device = makeBlockDevice(openReadWrite(loop.path(), O_DIRECT));
        for (const uint64_t offset : {0U, 8192U, 0U}) {
            device->write(bytes, offset);
            device->read(bytes, offset);
            EXPECT_TRUE(device->synchronize().isSuccess());
            EXPECT_EQ(device->disturbance(), Disturbance::none) << "its own writes";
        }
        const FileDescriptor other = openReadWrite(loop.path(), O_DIRECT);
        EXPECT_EQ(device->disturbance(), Disturbance::none) << "opened by another program";
        ASSERT_EQ(pwrite(other.get(), bytes.data(), 512, 0), 512);
        EXPECT_EQ(device->disturbance(), Disturbance::writtenByOthers);
    }
    {
        const auto device = makeBlockDevice(openReadWrite(loop.path(), O_DIRECT));
        const FileDescriptor cached = openReadWrite(loop.path());
        ASSERT_EQ(pwrite(cached.get(), bytes.data(), 512, 0), 512);
        EXPECT_TRUE(device->synchronize().isSuccess());
        EXPECT_EQ(device->disturbance(), Disturbance::writtenByOthers) << "through the cache";
    }
    const auto device = makeBlockDevice(openReadWrite(loop.path(), O_DIRECT));
    EXPECT_EQ(device->disturbance(), Disturbance::none) << "written to before it was opened";
    secondsAsleep = 1;
    EXPECT_EQ(device->disturbance(), Disturbance::possiblyExchanged);
    EXPECT_EQ(makeBlockDevice(openReadWrite(loop.path()))->disturbance(), Disturbance::none)
        << "opened since";
}

TEST_F(LockedBlockDeviceTests, anotherMediumInTheSameDeviceIsNoticed) {
    const FileDescriptor control = openReadWrite("/dev/loop-control");
    // A program that looks for a free slot at this moment is given a lower one.
    const int number = ioctl(control.get(), LOOP_CTL_ADD, 1000 + getpid() % 1000);
    ASSERT_GE(number, 1000);
    const auto slot = "/dev/loop" + std::to_string(number);
    auto device = makeBlockDevice(openReadWrite(slot));
    EXPECT_EQ(device->disturbance(), Disturbance::none);

    const FileDescriptor card = openReadWrite(mediumFile("card"));
    loop_config insertion{};
    insertion.fd = static_cast<uint32_t>(card.get());
    insertion.info.lo_flags = LO_FLAGS_AUTOCLEAR;
    ioctl(openReadWrite(slot).get(), LOOP_CONFIGURE, &insertion);
    EXPECT_EQ(device->disturbance(), Disturbance::exchanged);
    device.reset();
    ioctl(control.get(), LOOP_CTL_REMOVE, number);
}

}  // namespace tessel
