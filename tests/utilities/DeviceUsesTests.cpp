// Mounts, locks, swap areas and other uses of a device, read from the kernel's files.

#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <cstdio>
#include <set>
#include <sstream>

#include "foundation/Errors.h"
#include "tests/support/LoopDeviceTest.h"
#include "utilities/linux/system/DeviceLocks.h"
#include "utilities/linux/system/DeviceUses.h"
#include "utilities/linux/system/KernelFiles.h"

namespace tessel {

namespace {

/// Writes a file whose path is relative to the root, with the folders on its way.
void writeFile(const TemporaryFolder& root, const std::string& path, const std::string& text) {
    std::filesystem::create_directories((root.path() / path).parent_path());
    root.write(path, text);
}

/// Reads the text of a table such as /proc/self/mountinfo or /proc/swaps.
MountTable tableOf(std::string text) {
    MountTable table(mnt_new_table());
    FILE* const file = fmemopen(text.data(), text.size(), "r");
    mnt_table_parse_stream(table.get(), file, "table");
    std::fclose(file);
    return table;
}

}  // namespace

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
        std::string target;
        bool isSwap;
    } cases[] = {
        {mounted, file, folder.path(), true},
        {mounted, "/a", folder.path(), false},
        {"36 35 0:99 / /srv/a\\040card rw - btrfs " + link + " rw\n", link, "/srv/a card", true},
        {"36 35 0:99 / /srv rw - tmpfs none rw\n", loop.path(), "", true},
        {"36 35 0:99 / /srv rw - fuse.sshfs " + link + " rw\n", "/a", "", false},
    };
    for (const auto& [mounts, swap, target, isSwap] : cases) {
        SCOPED_TRACE(mounts + swap);
        DiskSnapshot snapshot{.devices = {KernelDevice{.name = loop.path().filename()}}};
        const auto swaps = "Filename\tType\tSize\tUsed\tPriority\n" + swap + " file 100 0 -2\n";
        addUses(snapshot, tableOf(mounts).get(), tableOf(swaps).get());
        const auto& found = snapshot.devices[0].mounts;
        EXPECT_EQ(found.empty() ? "" : found.front().target, target);
        EXPECT_EQ(snapshot.devices[0].isSwap, isSwap);
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
    for (const auto& [file, user] : files)
        writeFile(root, file, "/dev/" + user);
    writeFile(root, "sys/bus/xen-backend/devices/vbd-1-51712/physical_device", "8:1f\n");
    writeFile(root, "sys/bus/xen-backend/devices/vbd-2-51712/physical_device", "\n");
    const auto users = readDeviceUsers(root.path());
    ASSERT_EQ(users.size(), std::size(files) + 1);
    for (size_t i = 0; i < std::size(files); ++i) {
        EXPECT_EQ(users[i].name, files[i].second);
        EXPECT_EQ(users[i].path, "/dev/" + files[i].second);
    }
    EXPECT_EQ(users.back().name, "vbd-1-51712");
    EXPECT_EQ(users.back().path, "/sys/dev/block/8:31");
}

TEST(DeviceUsesTests, fileSystemsThatMaySpanDisksAreFound) {
    const TemporaryFolder root;
    const auto link = [&root](const std::string& path, const std::string& device) {
        writeFile(root, "devices/" + device, "");
        std::filesystem::create_directories((root.path() / path).parent_path());
        std::filesystem::create_symlink(root.path() / "devices" / device, root.path() / path);
    };
    link("sys/fs/btrfs/one/devices/sda", "sda");
    link("sys/fs/btrfs/two/devices/sdb", "sdb");
    link("sys/fs/btrfs/two/devices/sdc", "sdc");
    link("sys/fs/bcachefs/three/dev-0/block", "sdd");
    link("sys/fs/bcachefs/three/dev-1/block", "sde");
    writeFile(root, "proc/fs/jbd2/sdf/info", "");
    writeFile(root, "proc/fs/jbd2/sdg-8/info", "");  // a journal within its own file system
    const struct {
        const char* device;
        bool isActive;
        bool spansDisks;
    } cases[] = {{"sda", true, false}, {"sdb", true, true},  {"sdc", true, true},  {"sdd", true, true},
                 {"sde", true, true},  {"sdf", false, true}, {"sdg", false, false}};
    DiskSnapshot snapshot;
    for (const auto& expected : cases)
        snapshot.devices.push_back({.name = expected.device});
    addSpanningFileSystems(snapshot, root.path());
    for (size_t i = 0; i < std::size(cases); ++i) {
        SCOPED_TRACE(cases[i].device);
        EXPECT_EQ(snapshot.devices[i].isFileSystemActive, cases[i].isActive);
        EXPECT_EQ(snapshot.devices[i].spansDisks, cases[i].spansDisks);
    }
    EXPECT_FALSE(snapshot.hasZFSPools);
    writeFile(root, "proc/spl/kstat/zfs/arcstats", "");
    addSpanningFileSystems(snapshot, root.path());
    EXPECT_FALSE(snapshot.hasZFSPools) << "the module alone";
    writeFile(root, "proc/spl/kstat/zfs/tank/state", "ONLINE");
    addSpanningFileSystems(snapshot, root.path());
    EXPECT_TRUE(snapshot.hasZFSPools);
}

TEST(DeviceUsesTests, onlyWhatIsNotThereIsTakenForUnused) {
    const TemporaryFolder root;
    EXPECT_EQ(firstLineOf(root.path() / "missing"), std::nullopt);
    EXPECT_TRUE(namesIn(root.path() / "missing").empty());
    EXPECT_TRUE(filesMatching(root.path() / "missing/*").empty());
    // Neither a folder nor a link to itself can be read as a file.
    std::filesystem::create_symlink("circle", root.path() / "circle");
    EXPECT_THROW(static_cast<void>(firstLineOf(root.path())), PlatformError);
    EXPECT_THROW(static_cast<void>(namesIn(root.path() / "circle")), PlatformError);
    writeFile(root, "sys/block/loop3/loop/backing_file/none", "");
    EXPECT_THROW(static_cast<void>(readDeviceUsers(root.path())), PlatformError);
}

}  // namespace tessel
