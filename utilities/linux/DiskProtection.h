#pragma once

#include <optional>
#include <string>

#include "utilities/linux/Machine.h"

namespace tessel {

/// Why this disk is never unmounted, opened or ejected, and is reported as not writable. Absent exactly when
/// nothing speaks against it; every doubt does.
[[nodiscard]] std::optional<std::string> protectionReason(const Machine& machine, const BlockDevice& disk);

/// Throws PlatformError, which gives the reason, when the disk is protected.
void requireUnprotected(const Machine& machine, const BlockDevice& disk);

}  // namespace tessel
