#pragma once

#include <sys/types.h>

#include <istream>
#include <set>
#include <string>

#include "utilities/linux/DiskSnapshot.h"

namespace tessel {

/// Returns the files that carry an exclusive lock in the kernel's table of locks or, as virtual machines and
/// storage servers make them, a lock on a range of bytes. Exclusive locks of the process `self` don't count.
/// Files are named as in the table: by the number of the file system and that of the file in it, such as
/// "00:05:345".
[[nodiscard]] std::set<std::string> lockedFiles(std::istream& table, pid_t self);

/// Notes which devices another program has locked for itself alone through any node, as partitioning tools
/// and this program do while they write. Throws PlatformError if the table of locks can't be read, or a
/// sandbox hides other processes.
void addLocks(DiskSnapshot& snapshot);

}  // namespace tessel
