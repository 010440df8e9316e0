#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <set>
#include <sstream>

#include "tests/support/LoopDeviceTest.h"
#include "tests/support/MountTables.h"
#include "utilities/linux/system/DeviceLocks.h"
#include "utilities/linux/system/DeviceUsers.h"

namespace tessel {

using UsedLoopDeviceTests = LoopDeviceTest;

TEST_F(UsedLoopDeviceTests, areFoundByTheirNumberAndByEveryPath) {
    const auto file = mediumFile("card");
    const LoopDevice loop({.file = file});
    const std::string link = folder.path() / "link";
    std::filesystem::create_symlink(loop.path(), link);
    struct stat status{};
    ASSERT_EQ(stat(link.c_str(), &status), 0);
    const auto number = std::to_string(major(status.st_rdev)) + ":" + std::to_string(minor(status.st_rdev));
    const std::string mounted =
        "36 35 " + number + " / " + folder.path().string() + " rw - ext4 /dev/root rw\n";

    const struct {
        std::string mounts;
        std::string swap;
        size_t mountsFound;
        bool isSwap;
    } cases[] = {
        {mounted, file, 1, true},
        {mounted, "/a", 1, false},
        {"36 35 0:99 / /srv rw - btrfs " + link + " rw\n", link, 1, true},
        {"36 35 0:99 / /srv rw - tmpfs none rw\n", loop.path(), 0, true},
    };
    for (const auto& [mounts, swap, mountsFound, isSwap] : cases) {
        SCOPED_TRACE(mounts + swap);
        Machine machine{.devices = {BlockDevice{.name = loop.path().filename()}}};
        addUses(machine, mounts, "Filename\tType\tSize\tUsed\tPriority\n" + swap + " file 100 0 -2\n");
        EXPECT_EQ(machine.devices[0].mounts.size(), mountsFound);
        EXPECT_EQ(machine.devices[0].isSwap, isSwap);
    }
}

TEST(DeviceUsesTests, aProgramThatWantsToBeAloneIsFoundByItsLock) {
    std::istringstream table(
        "1: POSIX  ADVISORY  READ 7 00:01:1 0 EOF\n2: OFDLCK ADVISORY  READ -1 00:01:2 0 EOF\n"
        "3: FLOCK  ADVISORY  WRITE 9 00:01:3 0 EOF\n4: FLOCK  ADVISORY  READ 9 00:01:4 0 EOF\n"
        "5: FLOCK  ADVISORY  WRITE 8 00:01:5 0 EOF\n6: LEASE  ACTIVE    WRITE 9 00:01:6 0 EOF\n");
    EXPECT_EQ(lockedFiles(table, 8), (std::set<std::string>{"00:01:1", "00:01:2", "00:01:3"}));
}

TEST(DeviceUsesTests, everyUserThatTheKernelRevealsIsRead) {
    const TemporaryFolder root;
    const std::pair<const char*, std::string> files[] = {
        {"sys/block/loop3/loop/backing_file", "loop3"},
        {"sys/block/zram0/backing_dev", "zram0"},
        {"sys/kernel/config/target/core/iblock_0/shelf/udev_path", "shelf"},
        {"sys/kernel/config/nvmet/subsystems/tides/namespaces/1/device_path", "tides"},
        {"sys/kernel/config/usb_gadget/g1/functions/mass_storage.0/lun.0/file", "g1"}};
    for (const auto& [file, user] : files) {
        std::filesystem::create_directories((root.path() / file).parent_path());
        root.write(file, "/dev/" + user);
    }
    const auto users = readDeviceUsers(root.path());
    ASSERT_EQ(users.size(), std::size(files));
    for (size_t i = 0; i < users.size(); ++i) {
        EXPECT_EQ(users[i].name, files[i].second);
        EXPECT_EQ(users[i].path, "/dev/" + files[i].second);
    }
}

}  // namespace tessel
