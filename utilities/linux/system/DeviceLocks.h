#pragma once

#include <sys/types.h>

#include <istream>
#include <set>
#include <string>

#include "utilities/linux/DiskSnapshot.h"

namespace tessel {

/// Reads the kernel's table of locks. Returns the files that carry an exclusive lock or, as virtual machines
/// and storage servers make them, one on a range of bytes; exclusive locks of the process `self` don't count.
/// Files are named as in the table: by the number of the file system and that of the file in it, such as
/// "00:05:345".
[[nodiscard]] std::set<std::string> lockedFiles(std::istream& table, pid_t self);

/// Notes which devices another program has locked for itself alone, as partitioning tools and this program do
/// while they write; through whichever node it has. Throws PlatformError when the table of locks can't be
/// read.
void addLocks(DiskSnapshot& snapshot);

}  // namespace tessel
