#include "platform/LoopDevice.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <fstream>

#include "platform/Errors.h"

namespace tessel {

class LoopDeviceTests : public testing::Test {
  protected:
    void SetUp() override {
        if (!LoopDevice::isAvailable()) GTEST_SKIP() << "this user may not attach loop devices";
        std::ofstream(file).close();
        std::filesystem::resize_file(file, size);
    }
    void TearDown() override { std::filesystem::remove(file); }

    static bool isAttached(const std::filesystem::path& device) {
        return std::filesystem::exists("/sys/block" / device.filename() / "loop/backing_file");
    }

    static constexpr uint64_t size = uint64_t{1} << 20;
    const std::filesystem::path file =
        testing::TempDir() + "loop-device-tests." + std::to_string(getpid()) + ".img";
};

TEST_F(LoopDeviceTests, theFileIsABlockDeviceUntilTheObjectIsGone) {
    std::filesystem::path path;
    {
        const LoopDevice loop({.file = file, .blockSize = 4096});
        path = loop.path();
        const FileDescriptor device(open(path.c_str(), O_RDWR | O_EXCL | O_CLOEXEC));
        int blockSize = 0;
        uint64_t bytes = 0;
        ASSERT_EQ(ioctl(device.get(), BLKSSZGET, &blockSize), 0);
        ASSERT_EQ(ioctl(device.get(), BLKGETSIZE64, &bytes), 0);
        EXPECT_EQ(blockSize, 4096);
        EXPECT_EQ(bytes, size);

        const std::string_view text = "written through the device";
        ASSERT_EQ(pwrite(device.get(), text.data(), text.size(), 8192), static_cast<ssize_t>(text.size()));
        ASSERT_EQ(fsync(device.get()), 0);
        std::string found(text.size(), ' ');
        std::ifstream(file).seekg(8192).read(found.data(), static_cast<std::streamsize>(found.size()));
        EXPECT_EQ(found, text);
        EXPECT_TRUE(isAttached(path));
    }
    EXPECT_FALSE(isAttached(path));
}

TEST_F(LoopDeviceTests, manyDevicesCanBeAttachedAtOnce) {
    const LoopDevice one({.file = file, .usesDirectIO = true});
    const LoopDevice other({.file = file});
    EXPECT_NE(one.path(), other.path());
}

TEST_F(LoopDeviceTests, whatCannotBeAttachedIsAnError) {
    EXPECT_THROW(LoopDevice({.file = "/no/such/file"}), PlatformError);
    EXPECT_THROW(LoopDevice({.file = file, .blockSize = 3000}), PlatformError);
}

}  // namespace tessel
