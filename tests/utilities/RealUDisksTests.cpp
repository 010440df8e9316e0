#include <gmock/gmock.h>

#include <fstream>

#include "model/SDCardPolicy.h"
#include "tests/utilities/LinuxProgramsTest.h"

namespace tessel {

using testing::HasSubstr;

/// Runs the real UDisks2 on a private bus, with a device database that knows one loop device.
class RealUDisksTests : public MountedDiskTest {
  protected:
    void SetUp() override {
        MountedDiskTest::SetUp();
        if (IsSkipped()) return;
        if (!std::filesystem::exists(daemon)) GTEST_SKIP() << "needs UDisks2";
        ASSERT_EQ(::mount("tmpfs", "/var/lib", "tmpfs", 0, nullptr), 0);
        std::filesystem::create_directories("/var/lib/udisks2");
        describeInDatabase();
        udisks.emplace(std::vector<std::string>{"sh", "-c", std::string("exec ") + daemon + " 2>/dev/null"});
        for (int attempt = 0; attempt < 30 && diskutil({"list", "-plist"}).status != 0; ++attempt)
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
        if (!isSystemDiskKnown()) GTEST_SKIP() << "needs a disk below \"/\"";
    }
    void TearDown() override {
        MountedDiskTest::TearDown();
        umount2("/var/lib", MNT_DETACH);
    }

    /// Does what the device manager does once it has looked at the device.
    void describeInDatabase() const {
        std::filesystem::create_directories("/run/udev/data");
        std::ofstream("/run/udev/control").close();
        const auto device = contentOf("/sys/block" / loop->path().filename() / "dev");
        std::ofstream("/run/udev/data/b" + device.substr(0, device.find('\n')))
            << "S:disk/by-diskseq/" << number << "\nI:1\nE:ID_FS_USAGE=filesystem\nE:ID_FS_TYPE=ext4\nV:1\n";
    }

    /// Mounts the disk as a file manager does, and returns whether that succeeded. Here and when unmounting,
    /// UDisks2 waits up to 20 seconds for a device manager to notice, and no test has one.
    bool mountAsDesktop() const {
        const auto command =
            "udisksctl mount --no-user-interaction -b " + loop->path().string() + " >/dev/null 2>&1";
        return std::system(command.c_str()) == 0;
    }
    bool isMounted() const {
        return contentOf("/proc/self/mountinfo").find(loop->path().string() + " ") != std::string::npos;
    }

    static constexpr const char* daemon = "/usr/libexec/udisks2/udisksd";
};

TEST_F(RealUDisksTests, thePolicyRefusesTheLoopDeviceAsVirtual) {
    EXPECT_EQ(eligibilityFailureReason(info()),
              "The disk is virtual or synthesized rather than physical media.");
    EXPECT_TRUE(info().isWritable);
}

TEST_F(RealUDisksTests, aWholeWriteBelowThePolicy) {
    ASSERT_TRUE(mountAsDesktop());
    EXPECT_THAT(authopen().errors, HasSubstr("Resource busy")) << "mounted";
    ASSERT_EQ(diskutil({"unmountDisk", "force", "/dev/" + identifier}).status, 0);
    EXPECT_FALSE(isMounted());

    EXPECT_EQ(write(10 << 20,
                    [this](ImageWriteProgress report) {
                        if (report.phase == ImageWritePhase::synchronizing)
                            EXPECT_FALSE(mountAsDesktop()) << "the card is open to nobody else";
                    }),
              "");
    EXPECT_EQ(diskutil({"eject", "/dev/" + identifier}).status, 0);
    EXPECT_TRUE(holdsImage());
}

}  // namespace tessel
