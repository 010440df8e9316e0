// diskutil on a disk whose file systems are really mounted.

#include <gmock/gmock.h>
#include <sys/swap.h>

#include <fstream>

#include "tests/utilities/LinuxProgramsTest.h"
#include "utilities/linux/system/KernelDevices.h"

namespace tessel {

using testing::Contains;
using testing::HasSubstr;
using testing::Not;

class MountedDiskTests : public MountedDiskTest {};

TEST_F(MountedDiskTests, theJournalOfAFileSystemElsewhereIsInUse) {
    const LoopDevice other({.file = mediumFile("other", mediumSizeInBytes)});
    const std::string place = "/media/other";
    std::filesystem::create_directories(place);
    const auto commands = "mke2fs -q -F -O journal_dev " + loop->path().string() +
                          " && mke2fs -q -F -t ext4 -J device=" + loop->path().string() + " " +
                          other.path().string() + " && mount " + other.path().string() + " " + place;
    ASSERT_EQ(std::system(commands.c_str()), 0);
    EXPECT_THAT(authopen().errors, HasSubstr("is protected: it is part of a file system that may span"));
    EXPECT_EQ(umount2(place.c_str(), 0), 0);
}

TEST_F(MountedDiskTests, whatAContainerMountedIsProtected) {
    mount("uhelper=udisks2");
    const Companion container({"unshare", "-m", "--propagation", "private", "sleep", "60"});
    const auto isEntered = [&] { return contentOf(container.folder() / "comm") == "sleep\n"; };
    while (!isEntered())
        std::this_thread::yield();
    startUDisks("mounted at=" + std::string(mountPoint) + "\n");
    for (int attempt = 1; attempt <= 2; ++attempt) {
        const UtilityRun run = unmount();
        EXPECT_EQ(run.status, 1);
        EXPECT_THAT(run.errors, HasSubstr("a volume on it is mounted elsewhere"));
        EXPECT_FALSE(isMounted());
    }
    EXPECT_FALSE(info().isWritable);
    EXPECT_THAT(authopen().errors, HasSubstr("a volume on it is mounted elsewhere"));
}

TEST_F(MountedDiskTests, whatTheKernelSaysOfADeviceIsRead) {
    const auto device = "/sys/block" / loop->path().filename();
    const auto pretended = folder.path() / "pretended";
    for (const char* name : {"holders/dm-7", "slaves/sdz"})
        std::filesystem::create_directories(pretended / name);
    for (const auto& [name, text] : {std::pair("ro", "1\n"), {"size", "4096\n"}})
        std::ofstream(pretended / name) << text;
    const auto names = {"holders", "slaves", "ro", "size"};
    for (const auto* name : names)
        ASSERT_EQ(::mount((pretended / name).c_str(), (device / name).c_str(), nullptr, MS_BIND, nullptr), 0);

    const auto devices = readKernelDevices().devices;
    const auto read = std::ranges::find(devices, device.filename().string(), &KernelDevice::name);
    ASSERT_NE(read, devices.end());
    EXPECT_THAT(read->holders, testing::ElementsAre("dm-7"));
    EXPECT_THAT(read->slaves, testing::ElementsAre("sdz"));
    EXPECT_TRUE(read->isReadOnly);
    EXPECT_EQ(read->sizeBytes, 4096U * 512);
    EXPECT_EQ(read->partitionNumber, 0U);
    for (const auto* name : names)
        umount2((device / name).c_str(), MNT_DETACH);
}

TEST_F(MountedDiskTests, aFileThatSwapsProtectsItsDisk) {
    mountWith("uhelper=udisks2");
    const std::string file = std::string(mountPoint) + "/swap";
    const auto format = "dd if=/dev/zero of=" + file + " bs=1M count=4 status=none && chmod 600 " + file +
                        " && mkswap " + file + " >/dev/null";
    ASSERT_EQ(std::system(format.c_str()), 0);
    if (swapon(file.c_str(), 0) != 0) GTEST_SKIP() << "needs swap files";
    EXPECT_THAT(unmount().errors, HasSubstr("it is used as swap space"));
    EXPECT_EQ(swapoff(file.c_str()), 0);
}

TEST_F(MountedDiskTests, whatUDisksMountedIsUnmounted) {
    mountWith("uhelper=udisks2");
    EXPECT_TRUE(info().isWritable);
    EXPECT_THAT(authopen().errors, HasSubstr("Resource busy")) << "mounted";
    const UtilityRun run = unmount();
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_FALSE(isMounted());
    EXPECT_EQ(authopen().status, 0);
}

TEST_F(MountedDiskTests, whatTheSystemMountedIsProtected) {
    mountWith("rw");
    EXPECT_FALSE(info().isWritable);
    EXPECT_THAT(unmount().errors, HasSubstr("is protected"));
    EXPECT_THAT(authopen().errors, HasSubstr("is protected"));
    EXPECT_TRUE(isMounted());
    EXPECT_THAT(calls(), testing::ElementsAre("ready"));
}

TEST_F(MountedDiskTests, aVolumeInUseStaysMounted) {
    mountWith("uhelper=udisks2");
    const auto file = std::filesystem::path(mountPoint) / "file";
    const FileDescriptor user(open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    for (const UtilityRun& run : {unmount(), eject()}) {
        EXPECT_EQ(run.status, 1);
        EXPECT_THAT(run.errors, HasSubstr("Resource busy"));
    }
    EXPECT_TRUE(isMounted());
    EXPECT_THAT(calls(), Not(Contains(HasSubstr("force"))));
}

}  // namespace tessel
