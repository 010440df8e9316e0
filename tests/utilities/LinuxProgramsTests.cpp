#include <gmock/gmock.h>
#include <sys/stat.h>
#include <sys/swap.h>
#include <sys/sysmacros.h>

#include <fstream>

#include "tests/utilities/LinuxProgramsTest.h"
#include "utilities/linux/system/KernelDevices.h"

namespace tessel {

using testing::Contains;
using testing::HasSubstr;
using testing::Not;

class LinuxProgramsTests : public LinuxProgramsTest {};

class MountedDiskTests : public MountedDiskTest {};

TEST_F(LinuxProgramsTests, withoutUDisksTheySayWhatIsMissing) {
    const UtilityRun withBus = authopen();
    bus.reset();
    const UtilityRun withoutBus = diskutil({"list", "-plist"});
    for (const auto* run : {&withBus, &withoutBus}) {
        EXPECT_EQ(run->status, 1);
        EXPECT_THAT(run->errors, HasSubstr("UDisks2 is not running"));
    }
}

TEST_F(LinuxProgramsTests, theDiskIsListedUnderTheKernelsNumber) {
    startUDisks();
    const DiskList list = parseDiskList(diskutil({"list", "-plist"}).output);
    EXPECT_THAT(list.identifiers, Contains(identifier));
    EXPECT_THAT(diskutil({"info", "-plist", "/dev/" + identifier}).output, HasSubstr(identifier));
    const SDWholeDisk disk = info();
    EXPECT_EQ(disk.mediaName, "Generic SD Card");
    EXPECT_EQ(disk.sizeBytes, mediumSizeInBytes);
    EXPECT_EQ(disk.deviceLocation, "Internal (" + loop->path().string() + ")");
    EXPECT_FALSE(disk.isPhysical);
    EXPECT_EQ(disk.isWritable, isSystemDiskKnown());
    EXPECT_EQ(diskutil({"info", "-plist", "/dev/disk999999"}).errors, "Could not find disk: disk999999.\n");
}

TEST_F(LinuxProgramsTests, theDescriptorIsTheDiskAndNobodyElses) {
    startUDisks();
    if (!isSystemDiskKnown()) GTEST_SKIP() << "needs a disk below \"/\"";
    const UtilityRun run = authopen();
    ASSERT_EQ(run.received.outcome, ReceivedDescriptor::Outcome::received) << run.errors;
    EXPECT_EQ(run.status, 0);
    const int descriptor = run.received.descriptor.get();
    EXPECT_EQ(diskSequenceNumber(descriptor).value, number);
    EXPECT_EQ(fcntl(descriptor, F_GETFL) & (O_ACCMODE | O_DIRECT), O_RDWR | O_DIRECT);
    EXPECT_EQ(fcntl(descriptor, F_GETFD) & FD_CLOEXEC, FD_CLOEXEC);
    EXPECT_FALSE(openReadWrite(loop->path(), O_EXCL).isOpen());
    EXPECT_FALSE(lockExclusively(openReadWrite(loop->path()).get()).isSuccess());
}

TEST_F(LinuxProgramsTests, refusalsArriveAsWhatTheyAre) {
    constexpr auto notHandedOver =
        "The authorized raw-device open failed: The disk service UDisks2 did not hand over what it opened.";
    const struct {
        const char* error;
        const char* message;
        const char* sentence;
    } refusals[] = {
        {"NotAuthorizedDismissed", "The authentication dialog was dismissed", "The operation was cancelled."},
        {"NotAuthorized", "Not authorized to perform operation",
         "The authorized raw-device open failed: Not authorized to perform operation. Authentication failed, "
         "or the polkit rules of this computer forbid it. If no dialog was shown, start the polkit agent of "
         "your desktop, such as lxpolkit, and try again."},
        {"NotAuthorizedCanObtain", "Not authorized to perform operation",
         "The authorized raw-device open failed: Not authorized to perform operation. Nobody could be asked, "
         "because no authentication agent is running in this session. Start the polkit agent of your "
         "desktop, such as lxpolkit, and try again."},
        {"DeviceBusy", "It is in use",
         "The SD card is still in use by another process. Close applications using the card, refresh the "
         "disk list, and try again."},
        {"Failed", "The reader burns", "The authorized raw-device open failed: The reader burns"},
        {"", "\nplace=-1", notHandedOver},
        {"", "\nplace=1", notHandedOver},
    };
    for (const auto& [error, message, sentence] : refusals) {
        startUDisks("open=" + std::string(error) + "\nmessage=" + message + "\n");
        if (!isSystemDiskKnown()) GTEST_SKIP() << "needs a disk below \"/\"";
        const UtilityRun run = authopen();
        EXPECT_EQ(run.status, 1);
        const std::string text = run.errors.substr(0, run.errors.find_last_not_of('\n') + 1);
        try {
            throwAuthorizationFailure(text);
        } catch (const std::exception&) {
            EXPECT_EQ(localizedDescription(std::current_exception()), sentence);
        }
    }
}

TEST_F(LinuxProgramsTests, whatUDisksSaysOfAnotherMediumIsNotBelieved) {
    for (const auto& known : {std::to_string(number + 1), std::to_string(number) + "-part1"}) {
        startUDisks("", known);
        EXPECT_FALSE(info().isWritable);
        EXPECT_THAT(authopen().errors, HasSubstr("is protected"));
        EXPECT_NE(diskutil({"eject", "/dev/" + identifier}).status, 0);
        EXPECT_THAT(calls(), testing::ElementsAre("ready"));
    }
}

TEST_F(LinuxProgramsTests, theSystemsDiskIsNeverTouched) {
    startUDisks();
    identifier = "disk0";
    if (isSystemDiskKnown()) EXPECT_FALSE(info().isRemovable || info().isEjectable);
    EXPECT_EQ(authopen().status, 1);
    for (const auto& arguments : {std::vector<std::string>{"unmountDisk", "force", "/dev/disk0"},
                                  std::vector<std::string>{"eject", "/dev/disk0"}})
        EXPECT_EQ(diskutil(arguments).status, 1);
    EXPECT_THAT(calls(), testing::ElementsAre("ready"));
}

TEST_F(LinuxProgramsTests, ejectingSucceedsOrSaysWhyNot) {
    const struct {
        const char* error;
        int status;
    } cases[] = {{"", 0}, {"Failed", 0}, {"NotAuthorized", 1}, {"NotAuthorizedDismissed", 1}};
    for (const auto& [error, status] : cases) {
        startUDisks("eject=" + std::string(error) + "\nmessage=no\n");
        if (!isSystemDiskKnown()) GTEST_SKIP() << "needs a disk below \"/\"";
        EXPECT_EQ(diskutil({"eject", "/dev/" + identifier}).status, status) << error;
        EXPECT_THAT(calls(), Contains("eject " + loop->path().filename().string()));
    }
}

TEST_F(LinuxProgramsTests, aLoopDeviceOrALockedRangeProtectsWhatItLiesOn) {
    startUDisks();
    if (!isSystemDiskKnown()) GTEST_SKIP() << "needs a disk below \"/\"";
    {
        const LoopDevice above({.file = loop->path()});
        EXPECT_FALSE(info().isWritable);
        EXPECT_THAT(authopen().errors, HasSubstr("is used by a loop device"));
        EXPECT_THAT(diskutil({"unmountDisk", "force", "/dev/" + identifier}).errors,
                    HasSubstr("is used by a loop device"));
    }
    const FileDescriptor server = openReadWrite(loop->path());
    struct flock range{.l_type = F_RDLCK, .l_whence = SEEK_SET, .l_start = 100, .l_len = 1};
    ASSERT_EQ(fcntl(server.get(), F_OFD_SETLK, &range), 0);
    EXPECT_THAT(authopen().errors, HasSubstr("Resource busy: another program"));
    EXPECT_THAT(calls(), testing::ElementsAre("ready"));
}

TEST_F(LinuxProgramsTests, aLockThroughAnotherDeviceNodeIsSeen) {
    startUDisks();
    if (!isSystemDiskKnown()) GTEST_SKIP() << "needs a disk below \"/\"";
    struct stat status{};
    ASSERT_EQ(stat(loop->path().c_str(), &status), 0);
    const auto locked = folder.path() / "locked";
    // As a system virtual machine does: it has a /dev of its own, and its node there is another file.
    const Companion container(
        {"unshare", "-m", "--propagation", "private", "sh", "-c",
         "mount -t tmpfs none /dev && mknod /dev/card b " + std::to_string(major(status.st_rdev)) + " " +
             std::to_string(minor(status.st_rdev)) + " && exec flock /dev/card sh -c 'touch " +
             locked.string() + "; sleep 60'"});
    ASSERT_TRUE(appears(locked));
    EXPECT_EQ(authopen().errors, "Resource busy: another program is working on " + identifier + ".\n");
    EXPECT_THAT(calls(), testing::ElementsAre("ready"));
}

TEST_F(LinuxProgramsTests, aRangeThatIsLockedWhileTheUserIsAskedIsNotTakenForItsOwn) {
    startUDisks("lock=100\n");
    if (!isSystemDiskKnown()) GTEST_SKIP() << "needs a disk below \"/\"";
    EXPECT_THAT(authopen().errors, HasSubstr("Resource busy: another program"));
}

TEST_F(LinuxProgramsTests, aCardThatIsNotRemovableIsProtected) {
    startUDisks();
    if (!isSystemDiskKnown()) GTEST_SKIP() << "needs a disk below \"/\"";
    TearDown();
    for (const UtilityRun& run : {authopen(), diskutil({"unmountDisk", "force", "/dev/" + identifier}),
                                  diskutil({"eject", "/dev/" + identifier})})
        EXPECT_THAT(run.errors, HasSubstr("is protected: it is not a removable medium."));
}

TEST_F(MountedDiskTests, theJournalOfAFileSystemElsewhereIsInUse) {
    startUDisks();
    if (!isSystemDiskKnown()) GTEST_SKIP() << "needs a disk below \"/\"";
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
    if (!isSystemDiskKnown()) GTEST_SKIP() << "needs a disk below \"/\"";
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

    ASSERT_EQ(::mount("tmpfs", "/sys/fs", "tmpfs", 0, nullptr), 0);
    const std::filesystem::path members = "/sys/fs/btrfs/tides/devices";
    for (const auto& member : {std::filesystem::path(), device.filename(), std::filesystem::path("sdz")}) {
        std::filesystem::create_directories(members / member);
        const Machine machine = readKernelDevices();
        const auto read = std::ranges::find(machine.devices, device.filename().string(), &BlockDevice::name);
        ASSERT_NE(read, machine.devices.end());
        EXPECT_THAT(read->holders, testing::ElementsAre("dm-7"));
        EXPECT_THAT(read->slaves, testing::ElementsAre("sdz"));
        EXPECT_TRUE(read->isReadOnly);
        EXPECT_EQ(read->sizeBytes, 4096U * 512);
        EXPECT_EQ(read->partitionNumber, 0U);
        EXPECT_EQ(read->isFileSystemActive, !member.empty());
        EXPECT_EQ(read->spansDisks, member == "sdz");
    }
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
    for (const UtilityRun& run : {unmount(), diskutil({"eject", "/dev/" + identifier})}) {
        EXPECT_EQ(run.status, 1);
        EXPECT_THAT(run.errors, HasSubstr("Resource busy"));
    }
    EXPECT_TRUE(isMounted());
    EXPECT_THAT(calls(), Not(Contains(HasSubstr("force"))));
}

}  // namespace tessel
