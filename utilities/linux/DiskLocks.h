#pragma once

#include <string>

#include "utilities/linux/BlockSystem.h"

namespace tessel {

enum class OwnLock {
    none,
    onWholeDisk,  ///< that lock is this program's own, so only those on the partitions count
};

/// Reads the machine as soon as nobody else is working on the disk, such as another copy of this program or a
/// partitioning tool. Throws PlatformError when there is no such disk, or when it is still locked after two
/// seconds.
[[nodiscard]] Machine readUnlocked(BlockSystem& system, const std::string& identifier,
                                   OwnLock ownLock = OwnLock::none);

}  // namespace tessel
