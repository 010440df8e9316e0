#pragma once

#include <istream>
#include <set>
#include <string>

#include "utilities/linux/Machine.h"

namespace tessel {

/// Reads the kernel's table of locks. Returns the files that carry an exclusive lock or, as virtual machines
/// and storage servers make them, one on a range of bytes. They are named as in the table: by the number of
/// the file system and that of the file in it, such as "00:05:345".
[[nodiscard]] std::set<std::string> lockedFiles(std::istream& table);

/// Notes which devices a program has locked for itself alone, as partitioning tools and this program do while
/// they write.
void addLocks(Machine& machine);

}  // namespace tessel
