#include "utilities/linux/system/DeviceUses.h"

#include <libmount/libmount.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <memory>
#include <string_view>

#include "foundation/Errors.h"
#include "foundation/Release.h"
#include "utilities/linux/system/DeviceUsers.h"
#include "utilities/linux/system/KernelFiles.h"

namespace tessel {

namespace {

using Table = std::unique_ptr<libmnt_table, Release<mnt_unref_table>>;
using Iterator = std::unique_ptr<libmnt_iter, Release<mnt_free_iter>>;

constexpr std::string_view sysfsFolder = "/sys/dev/block/";

/// Returns the kernel's name of the block device with this path in sysfs; empty when there is none.
std::string blockDeviceInSysfs(const std::string& path) {
    std::error_code isMissing;
    const auto device = std::filesystem::canonical(path, isMissing);
    return isMissing ? "" : device.filename().string();
}

/// Returns the kernel's name of the block device with this number; empty when there is none.
std::string blockDeviceName(dev_t number) {
    return blockDeviceInSysfs(std::string(sysfsFolder) + std::to_string(major(number)) + ":" +
                              std::to_string(minor(number)));
}

/// Returns the name of the block device with this path; empty when there is none.
std::string blockDeviceAt(const char* path) {
    struct stat status{};
    const bool isBlockDevice = path && *path == '/' && stat(path, &status) == 0 && S_ISBLK(status.st_mode);
    return isBlockDevice ? blockDeviceName(status.st_rdev) : "";
}

/// Returns whether a program or another computer answers for what is mounted there. There are no devices of
/// this computer, and looking for some might wait for ever.
bool isAnsweredElsewhere(libmnt_fs* entry) {
    const char* const type = mnt_fs_get_fstype(entry);
    return mnt_fs_is_netfs(entry) || (type && std::string_view(type).starts_with("fuse"));
}

/// Returns the device that this entry mounts.
std::string deviceNameOf(libmnt_fs* entry) {
    if (const std::string name = blockDeviceName(mnt_fs_get_devno(entry)); !name.empty()) return name;
    // Some file systems, such as btrfs, have device numbers of their own and reveal only the name of their
    // device.
    return isAnsweredElsewhere(entry) ? "" : blockDeviceAt(mnt_fs_get_srcpath(entry));
}

/// Returns the device at this path, or else the one that the file lies on.
std::string deviceUnder(libmnt_table* mounts, const char* path) {
    if (!path) return "";
    const std::string_view words = path;
    if (words.starts_with(sysfsFolder)) return blockDeviceInSysfs(path);
    libmnt_fs* const mount = mnt_table_find_mountpoint(mounts, path, MNT_ITER_BACKWARD);
    std::string name = mount && isAnsweredElsewhere(mount) ? "" : blockDeviceAt(path);
    if (name.empty() && mount) name = deviceNameOf(mount);
    // A node that exists only in another container is most likely named as it is here.
    return name.empty() && words.starts_with("/dev/") ? std::string(words.substr(5)) : name;
}

/// Returns the value of this option of a mount; empty when it has none.
std::string_view optionOf(libmnt_fs* entry, const char* option) {
    char* value = nullptr;
    size_t length = 0;
    const bool hasValue = mnt_fs_get_option(entry, option, &value, &length) == 0 && value;
    return hasValue ? std::string_view(value, length) : std::string_view();
}

Table readTable(int (*parse)(libmnt_table*, const char*)) {
    Table table(mnt_new_table());
    if (const int result = parse(table.get(), nullptr); result != 0)
        throw posixError("The table of mounted file systems could not be read", std::abs(result));
    return table;
}

template <typename Action>
void forEachEntry(libmnt_table* table, Action act) {
    const Iterator iterator(mnt_new_iter(MNT_ITER_FORWARD));
    libmnt_fs* entry = nullptr;
    while (mnt_table_next_fs(table, iterator.get(), &entry) == 0)
        act(entry);
}

/// Notes that a mounted file system consists of these devices.
void addMembers(Machine& machine, const std::vector<std::string>& members) {
    for (const std::string& member : members) {
        changeDevice(machine, member, [&](BlockDevice& device) {
            device.isFileSystemActive = true;
            device.spansDisks |= members.size() > 1;
        });
    }
}

}  // namespace

void addUses(Machine& machine, libmnt_table* mounts, libmnt_table* swaps) {
    forEachEntry(mounts, [&](libmnt_fs* entry) {
        const std::string name = deviceNameOf(entry);
        const char* const target = mnt_fs_get_target(entry);
        const Mount mount{.target = target ? target : "",
                          .isByUDisks = optionOf(entry, "uhelper") == "udisks2"};
        // Of several mounts on top of each other, "/" leads to the last one.
        if (mount.target == "/") machine.rootDevice = name;
        changeDevice(machine, name, [&](BlockDevice& device) { device.mounts.push_back(mount); });
        // XFS may have its log and its files' data on devices of their own.
        for (const char* option : {"logdev", "rtdev"}) {
            const std::string path(optionOf(entry, option));
            changeDevice(machine, blockDeviceAt(path.c_str()),
                         [](BlockDevice& device) { device.spansDisks = true; });
        }
    });
    forEachEntry(swaps, [&](libmnt_fs* entry) {
        changeDevice(machine, deviceUnder(mounts, mnt_fs_get_srcpath(entry)),
                     [](BlockDevice& device) { device.isSwap = true; });
    });
}

void addUses(Machine& machine) {
    const Table mounts = readTable(mnt_table_parse_mtab);
    addUses(machine, mounts.get(), readTable(mnt_table_parse_swaps).get());
}

void addUsers(Machine& machine) {
    const Table mounts = readTable(mnt_table_parse_mtab);
    for (const DeviceUser& user : readDeviceUsers())
        changeDevice(machine, deviceUnder(mounts.get(), user.path.c_str()),
                     [&](BlockDevice& device) { device.users.push_back(user.name); });
}

void addSpanningFileSystems(Machine& machine, const std::string& root) {
    for (const std::string& fileSystem : namesIn(root + "/sys/fs/btrfs"))
        addMembers(machine, namesIn(root + "/sys/fs/btrfs/" + fileSystem + "/devices"));

    for (const std::string& fileSystem : namesIn(root + "/sys/fs/bcachefs")) {
        std::vector<std::string> members;
        for (const auto& link : filesMatching(root + "/sys/fs/bcachefs/" + fileSystem + "/dev-*/block"))
            members.push_back(blockDeviceInSysfs(link));
        addMembers(machine, members);
    }
    // An ext4 file system may have its journal on another device, which then has an entry of its own name
    // here.
    for (const std::string& journal : namesIn(root + "/proc/fs/jbd2"))
        changeDevice(machine, journal, [](BlockDevice& device) { device.spansDisks = true; });

    machine.hasZFSPools = !filesMatching(root + "/proc/spl/kstat/zfs/*/state").empty();
}

}  // namespace tessel
