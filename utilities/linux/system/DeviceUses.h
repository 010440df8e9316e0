#pragma once

#include "utilities/linux/Machine.h"

struct libmnt_table;

namespace tessel {

/// Notes where the devices are mounted, which of them are swap space, and which one is mounted at "/". Throws
/// PlatformError when the tables can't be read, since no device is then known to be unused.
void addUses(Machine& machine);

/// Notes only what these two tables say.
void addUses(Machine& machine, libmnt_table* mounts, libmnt_table* swaps);

/// Notes what in the kernel uses the devices without being a holder. Throws PlatformError when that can't be
/// read.
void addUsers(Machine& machine);

/// Notes which devices belong to mounted file systems that may span several, and whether ZFS has pools. Reads
/// the kernel's files, whose paths begin with `root`. Throws PlatformError when one of them can't be read.
void addSpanningFileSystems(Machine& machine, const std::string& root = "");

/// Calls the function with the device of this name, if there is one.
template <typename Action>
void changeDevice(Machine& machine, const std::string& name, Action change) {
    for (BlockDevice& device : machine.devices)
        if (device.name == name) change(device);
}

}  // namespace tessel
