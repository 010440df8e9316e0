#pragma once

#include <string>

#include "foundation/Errors.h"

#include "utilities/linux/BlockSystem.h"

namespace tessel {

/// Returns once nothing on the disk is mounted any more. Never touches a protected or locked disk; what may
/// end its protection is waited for a few seconds. Throws PlatformError.
void unmountDisk(BlockSystem& system, const std::string& identifier, BlockSystem::Time deadline);

/// Returns the error that tells the user that something keeps the disk mounted.
[[nodiscard]] PlatformError remounted(const std::string& identifier);

}  // namespace tessel
