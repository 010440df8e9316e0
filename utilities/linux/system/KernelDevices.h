#pragma once

#include <filesystem>

#include "utilities/linux/Machine.h"

namespace tessel {

/// What the kernel and the device database say about all block devices, and what uses them. Leaves the
/// records of UDisks2 and the sequence numbers of afterwards to be filled in. Throws PlatformError when the
/// table of mounts can't be read.
[[nodiscard]] Machine readKernelDevices();

/// The disk sequence number that the kernel gives at this moment to the device with this path in its tree; 0
/// when it gives none.
[[nodiscard]] uint64_t readSequenceNumber(const std::filesystem::path& device);

}  // namespace tessel
