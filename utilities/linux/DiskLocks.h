#pragma once

#include <string>

#include "utilities/linux/BlockSystem.h"

namespace tessel {

/// Returns whether another program has locked the disk, or may have done so.
[[nodiscard]] bool isLocked(const DiskSnapshot& snapshot, const KernelDevice& disk);

/// Reads the snapshot as soon as no other program is working on the disk, such as another copy of this
/// program or a partitioning tool. Throws PlatformError if there is no such disk, or if it is still locked
/// after two seconds.
[[nodiscard]] DiskSnapshot readUnlocked(BlockSystem& system, const std::string& identifier);

}  // namespace tessel
