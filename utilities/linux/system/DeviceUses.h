#pragma once

#include <libmount/libmount.h>
#include <sys/types.h>

#include <memory>
#include <string>
#include <vector>

#include "foundation/Release.h"
#include "utilities/linux/DiskSnapshot.h"

namespace tessel {

using MountTable = std::unique_ptr<libmnt_table, Release<mnt_unref_table>>;

/// Reads which file systems are mounted. Throws PlatformError when that can't be read.
[[nodiscard]] MountTable readMounts();

/// Reads which devices and files are swap space. Throws PlatformError when that can't be read.
[[nodiscard]] MountTable readSwaps();

/// Returns the kernel's name of the block device with this number; empty when there is none.
[[nodiscard]] std::string blockDeviceName(dev_t number);

/// Notes where the devices are mounted, which of them are swap space, and which one is mounted at "/".
void addUses(DiskSnapshot& snapshot, libmnt_table* mounts, libmnt_table* swaps);

/// Something in the kernel that works on a block device or a file without being a holder of it.
struct DeviceUser {
    std::string name;  ///< such as "loop3"
    std::string path;  ///< of the device, in /dev or in sysfs, or of the file
};

/// Returns all users that the kernel's files reveal; the paths of those files begin with `root`. Throws
/// PlatformError when one of them can't be read.
[[nodiscard]] std::vector<DeviceUser> readDeviceUsers(const std::string& root = "");

/// Notes the users in the kernel of the devices, or of a file on them, that are no holders. Throws
/// PlatformError when they can't be read.
void addUsers(DiskSnapshot& snapshot, libmnt_table* mounts);

/// Notes which devices belong to mounted file systems that may span several, and whether ZFS has pools. Reads
/// the kernel's files, whose paths begin with `root`. Throws PlatformError when one of them can't be read.
void addSpanningFileSystems(DiskSnapshot& snapshot, const std::string& root = "");

/// Calls the function with the device of this name, if there is one.
template <typename Action>
void changeDevice(DiskSnapshot& snapshot, const std::string& name, Action change) {
    for (KernelDevice& device : snapshot.devices)
        if (device.name == name) change(device);
}

}  // namespace tessel
