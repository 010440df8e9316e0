#include "utilities/linux/system/DeviceUses.h"

#include <libmount/libmount.h>
#include <sys/quota.h>
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

namespace tessel {

namespace {

using Table = std::unique_ptr<libmnt_table, Release<mnt_unref_table>>;
using Iterator = std::unique_ptr<libmnt_iter, Release<mnt_free_iter>>;

/// Returns the kernel's name of the block device with this number; empty when there is none.
std::string blockDeviceName(dev_t number) {
    std::error_code isMissing;
    const auto path = std::filesystem::canonical(
        "/sys/dev/block/" + std::to_string(major(number)) + ":" + std::to_string(minor(number)), isMissing);
    return isMissing ? "" : path.filename().string();
}

/// Returns the name of the block device with this path; empty when there is none.
std::string blockDeviceAt(const char* path) {
    struct stat status{};
    const bool isBlockDevice = path && stat(path, &status) == 0 && S_ISBLK(status.st_mode);
    return isBlockDevice ? blockDeviceName(status.st_rdev) : "";
}

/// Returns the device that this entry mounts.
std::string deviceNameOf(libmnt_fs* entry) {
    if (const std::string name = blockDeviceName(mnt_fs_get_devno(entry)); !name.empty()) return name;
    // Some file systems, such as btrfs, have device numbers of their own and reveal only the name of their
    // device.
    return blockDeviceAt(mnt_fs_get_srcpath(entry));
}

/// Returns the device at this path, or else the one that the file lies on.
std::string deviceUnder(libmnt_table* mounts, const char* path) {
    if (const std::string name = blockDeviceAt(path); !name.empty()) return name;
    libmnt_fs* const mount = path ? mnt_table_find_mountpoint(mounts, path, MNT_ITER_BACKWARD) : nullptr;
    const std::string name = mount ? deviceNameOf(mount) : "";
    // A node that exists only in another container is most likely named as it is here.
    const std::string_view words = path ? path : "";
    return name.empty() && words.starts_with("/dev/") ? std::string(words.substr(5)) : name;
}

bool isByUDisks(libmnt_fs* entry) {
    char* value = nullptr;
    size_t length = 0;
    return mnt_fs_get_option(entry, "uhelper", &value, &length) == 0 && value &&
           std::string_view(value, length) == "udisks2";
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

template <typename Action>
void changeDevice(Machine& machine, const std::string& name, Action change) {
    const auto device = std::ranges::find(machine.devices, name, &BlockDevice::name);
    if (device != machine.devices.end()) change(*device);
}

/// Returns whether a file system of this device is in use, in whichever container.
bool isFileSystemActive(const std::string& device) {
    // Without any rights, the kernel says what it knows of the file system's quotas, or that it is no file
    // system.
    int format = 0;
    const int result =
        quotactl(QCMD(Q_GETFMT, USRQUOTA), device.c_str(), 0, reinterpret_cast<char*>(&format));
    return result == 0 || errno == ESRCH || errno == EINVAL || errno == ENOSYS;
}

void addActiveFileSystems(Machine& machine) {
    // Where the kernel knows no quotas, it says the same of everything.
    if (isFileSystemActive("/dev/null")) return;
    for (BlockDevice& device : machine.devices)
        device.isFileSystemActive |= isFileSystemActive("/dev/" + device.name);
}

}  // namespace

void addUses(Machine& machine, libmnt_table* mounts, libmnt_table* swaps) {
    forEachEntry(mounts, [&](libmnt_fs* entry) {
        const std::string name = deviceNameOf(entry);
        const char* const target = mnt_fs_get_target(entry);
        const Mount mount{.target = target ? target : "", .isByUDisks = isByUDisks(entry)};
        // Of several mounts on top of each other, "/" leads to the last one.
        if (mount.target == "/") machine.rootDevice = name;
        changeDevice(machine, name, [&](BlockDevice& device) { device.mounts.push_back(mount); });
    });
    forEachEntry(swaps, [&](libmnt_fs* entry) {
        changeDevice(machine, deviceUnder(mounts, mnt_fs_get_srcpath(entry)),
                     [](BlockDevice& device) { device.isSwap = true; });
    });
}

void addUses(Machine& machine) {
    const Table mounts = readTable(mnt_table_parse_mtab);
    addUses(machine, mounts.get(), readTable(mnt_table_parse_swaps).get());
    for (const DeviceUser& user : readDeviceUsers())
        changeDevice(machine, deviceUnder(mounts.get(), user.path.c_str()),
                     [&](BlockDevice& device) { device.users.push_back(user.name); });
    // Since this comes after the mounts, what was unmounted in between is not taken for mounted elsewhere.
    addActiveFileSystems(machine);
}

}  // namespace tessel
