#pragma once

#include <string>

#include "foundation/Errors.h"

#include "utilities/linux/BlockSystem.h"

namespace tessel {

/// Unmounts everything on the disk. Never touches a protected or locked disk, but waits a few seconds for a
/// protection that may end. Throws PlatformError.
void unmountDisk(BlockSystem& system, const std::string& identifier, BlockSystem::Time deadline);

/// Returns the error that tells the user that a volume on the disk keeps being remounted.
[[nodiscard]] PlatformError remounted(const std::string& identifier);

}  // namespace tessel
