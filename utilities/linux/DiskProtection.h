#pragma once

#include <optional>
#include <string>

#include "utilities/linux/Machine.h"

namespace tessel {

/// Says why this disk is never unmounted, opened or ejected, and is reported as not writable. Absent only
/// when nothing speaks against using it; every doubt does.
[[nodiscard]] std::optional<std::string> protectionReason(const Machine& machine, const BlockDevice& disk);

/// Throws PlatformError with the reason when the disk is protected.
void requireUnprotected(const Machine& machine, const BlockDevice& disk);

}  // namespace tessel
