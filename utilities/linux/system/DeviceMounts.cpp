#include "utilities/linux/system/DeviceMounts.h"

#include <libmount/libmount.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <memory>

#include "foundation/Errors.h"
#include "foundation/Release.h"

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

/// Returns the device that this entry mounts or swaps to.
std::string deviceNameOf(libmnt_fs* entry) {
    if (const std::string name = blockDeviceName(mnt_fs_get_devno(entry)); !name.empty()) return name;
    // Some file systems, such as btrfs, have device numbers of their own and reveal only the name of their
    // device.
    const char* source = mnt_fs_get_srcpath(entry);
    struct stat status{};
    const bool isBlockDevice = source && stat(source, &status) == 0 && S_ISBLK(status.st_mode);
    return isBlockDevice ? blockDeviceName(status.st_rdev) : "";
}

bool isByUDisks(libmnt_fs* entry) {
    char* value = nullptr;
    size_t length = 0;
    return mnt_fs_get_option(entry, "uhelper", &value, &length) == 0 && value &&
           std::string_view(value, length) == "udisks2";
}

template <typename Action>
void forEachEntry(int (*parse)(libmnt_table*, const char*), const char* file, Action act) {
    const Table table(mnt_new_table());
    const Iterator iterator(mnt_new_iter(MNT_ITER_FORWARD));
    if (const int result = parse(table.get(), file); result != 0)
        throw posixError("The table of mounted file systems could not be read", std::abs(result));
    libmnt_fs* entry = nullptr;
    while (mnt_table_next_fs(table.get(), iterator.get(), &entry) == 0)
        act(entry);
}

template <typename Action>
void changeDevice(Machine& machine, const std::string& name, Action change) {
    const auto device = std::ranges::find(machine.devices, name, &BlockDevice::name);
    if (device != machine.devices.end()) change(*device);
}

}  // namespace

void addMountsAndSwaps(Machine& machine) {
    forEachEntry(mnt_table_parse_mtab, nullptr, [&](libmnt_fs* entry) {
        const std::string name = deviceNameOf(entry);
        const Mount mount{.target = mnt_fs_get_target(entry), .isByUDisks = isByUDisks(entry)};
        // Of several mounts on top of each other, "/" leads to the last one.
        if (mount.target == "/") machine.rootDevice = name;
        changeDevice(machine, name, [&](BlockDevice& device) { device.mounts.push_back(mount); });
    });
    forEachEntry(mnt_table_parse_swaps, nullptr, [&](libmnt_fs* entry) {
        changeDevice(machine, deviceNameOf(entry), [](BlockDevice& device) { device.isSwap = true; });
    });
}

}  // namespace tessel
