#pragma once

#include <sys/stat.h>

#include <set>
#include <string>

#include "utilities/linux/Machine.h"

/// System virtual machines and containers have a /dev of their own, with nodes of their own for the same
/// devices.
namespace tessel {

/// Returns how the kernel's table of locks names a file.
[[nodiscard]] std::string nameInLockTable(const struct stat& status);

/// Notes which devices are locked through a node in the /dev of another mount namespace. The files that are
/// locked are named as in the kernel's table. Where this user may not look into such a folder, it notes that
/// some disk is locked.
void addLocksOfOtherNodes(Machine& machine, std::set<std::string> lockedFiles);

}  // namespace tessel
