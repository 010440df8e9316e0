#include "utilities/linux/system/DeviceUses.h"

#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <string_view>

#include "foundation/Errors.h"
#include "foundation/Release.h"
#include "utilities/linux/system/KernelFiles.h"

namespace tessel {

namespace {

using Iterator = std::unique_ptr<libmnt_iter, Release<mnt_free_iter>>;

constexpr std::string_view sysfsFolder = "/sys/dev/block/";

std::string pathInSysfs(unsigned majorNumber, unsigned minorNumber) {
    return std::string(sysfsFolder) + std::to_string(majorNumber) + ":" + std::to_string(minorNumber);
}

/// Returns the kernel's name of the block device with this path in sysfs; empty when there is none.
std::string blockDeviceInSysfs(const std::string& path) {
    std::error_code isMissing;
    const auto device = std::filesystem::canonical(path, isMissing);
    return isMissing ? "" : device.filename().string();
}

/// Returns the name of the block device with this path; empty when there is none.
std::string blockDeviceAt(const char* path) {
    struct stat status{};
    const bool isBlockDevice = path && *path == '/' && stat(path, &status) == 0 && S_ISBLK(status.st_mode);
    return isBlockDevice ? blockDeviceName(status.st_rdev) : "";
}

/// Returns whether another program or computer serves the file system. Such a mount has no device of this
/// computer, and looking for one might hang forever.
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
    // A node that exists only in another container most likely has the same name here.
    return name.empty() && words.starts_with("/dev/") ? std::string(words.substr(5)) : name;
}

/// Returns the value of this option of a mount; empty when it has none.
std::string_view optionOf(libmnt_fs* entry, const char* option) {
    char* value = nullptr;
    size_t length = 0;
    const bool hasValue = mnt_fs_get_option(entry, option, &value, &length) == 0 && value;
    return hasValue ? std::string_view(value, length) : std::string_view();
}

MountTable readTable(int (*parse)(libmnt_table*, const char*)) {
    MountTable table(mnt_new_table());
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

struct Source {
    const char* pattern;  ///< of the files that name a device or file
    size_t namePlace;     ///< the folder of the path that names the user, counted from the root
};

constexpr auto sources = std::to_array<Source>({
    {"/sys/block/*/loop/backing_file", 2},
    {"/sys/block/*/backing_dev", 2},  // compressed memory that overflows onto a disk
    {"/sys/kernel/config/target/core/*/*/udev_path", 6},
    {"/sys/kernel/config/nvmet/subsystems/*/namespaces/*/device_path", 5},
    {"/sys/kernel/config/usb_gadget/*/functions/mass_storage.*/*/file", 4},
    {"/sys/bus/xen-backend/devices/*/physical_device", 4},  // a disk of a virtual machine, as a number
});

std::string folderAt(size_t place, const std::string& path) {
    size_t begin = 1;
    for (; place > 0; --place)
        begin = path.find('/', begin) + 1;
    return path.substr(begin, path.find('/', begin) - begin);
}

/// Returns the path that the line holds or, if it is the number of a device such as "8:1f" (hexadecimal), the
/// path of that device in sysfs. Returns nothing if no device is used.
std::optional<std::string> pathIn(const std::string& line) {
    unsigned major = 0;
    unsigned minor = 0;
    if (line.starts_with("/")) return line;
    if (std::sscanf(line.c_str(), "%x:%x", &major, &minor) != 2) return std::nullopt;
    return pathInSysfs(major, minor);
}

/// Notes that a mounted file system consists of these devices.
void addMembers(DiskSnapshot& snapshot, const std::vector<std::string>& members) {
    for (const std::string& member : members) {
        changeDevice(snapshot, member, [&](KernelDevice& device) {
            device.isFileSystemActive = true;
            device.spansDisks |= members.size() > 1;
        });
    }
}

}  // namespace

std::string blockDeviceName(dev_t number) {
    return blockDeviceInSysfs(pathInSysfs(major(number), minor(number)));
}

MountTable readMounts() {
    return readTable(mnt_table_parse_mtab);
}

MountTable readSwaps() {
    return readTable(mnt_table_parse_swaps);
}

void addUses(DiskSnapshot& snapshot, libmnt_table* mounts, libmnt_table* swaps) {
    forEachEntry(mounts, [&](libmnt_fs* entry) {
        const std::string name = deviceNameOf(entry);
        const char* const target = mnt_fs_get_target(entry);
        const Mount mount{.target = target ? target : "",
                          .isByUDisks = optionOf(entry, "uhelper") == "udisks2"};
        // Of several mounts on top of each other, "/" leads to the last one.
        if (mount.target == "/") snapshot.rootDevice = name;
        changeDevice(snapshot, name, [&](KernelDevice& device) { device.mounts.push_back(mount); });
        // XFS may have its log and its files' data on devices of their own.
        for (const char* option : {"logdev", "rtdev"}) {
            const std::string path(optionOf(entry, option));
            changeDevice(snapshot, blockDeviceAt(path.c_str()),
                         [](KernelDevice& device) { device.spansDisks = true; });
        }
    });
    forEachEntry(swaps, [&](libmnt_fs* entry) {
        changeDevice(snapshot, deviceUnder(mounts, mnt_fs_get_srcpath(entry)),
                     [](KernelDevice& device) { device.isSwap = true; });
    });
}

std::vector<DeviceUser> readDeviceUsers(const std::string& root) {
    std::vector<DeviceUser> users;
    for (const Source& source : sources) {
        for (const std::string& file : filesMatching(root + source.pattern)) {
            if (const auto path = pathIn(firstLineOf(file).value_or("")))
                users.push_back({folderAt(source.namePlace, file.substr(root.size())), *path});
        }
    }
    return users;
}

void addUsers(DiskSnapshot& snapshot, libmnt_table* mounts) {
    for (const DeviceUser& user : readDeviceUsers())
        changeDevice(snapshot, deviceUnder(mounts, user.path.c_str()),
                     [&](KernelDevice& device) { device.users.push_back(user.name); });
}

void addSpanningFileSystems(DiskSnapshot& snapshot, const std::string& root) {
    const std::filesystem::path fileSystems = root + "/sys/fs";
    for (const std::string& fileSystem : namesIn(fileSystems / "btrfs"))
        addMembers(snapshot, namesIn(fileSystems / "btrfs" / fileSystem / "devices"));

    for (const std::string& fileSystem : namesIn(fileSystems / "bcachefs")) {
        std::vector<std::string> members;
        for (const auto& link : filesMatching(fileSystems / "bcachefs" / fileSystem / "dev-*/block"))
            members.push_back(blockDeviceInSysfs(link));
        addMembers(snapshot, members);
    }
    // An ext4 file system may have its journal on another device, which then has an entry of its own here.
    for (const std::string& journal : namesIn(root + "/proc/fs/jbd2"))
        changeDevice(snapshot, journal, [](KernelDevice& device) { device.spansDisks = true; });

    snapshot.hasZFSPools = !filesMatching(root + "/proc/spl/kstat/zfs/*/state").empty();
}

}  // namespace tessel
