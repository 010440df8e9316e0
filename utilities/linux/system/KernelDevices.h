#pragma once

#include <filesystem>

#include "utilities/linux/DiskSnapshot.h"

namespace tessel {

/// Returns what the kernel and udev's database report about all block devices and their use, without the
/// records of UDisks2 and the second reading of the sequence numbers. Throws PlatformError if the table of
/// mounts can't be read.
[[nodiscard]] DiskSnapshot readKernelDevices();

/// Returns the current disk sequence number of the device with this path in the kernel's tree; 0 if it has
/// none.
[[nodiscard]] uint64_t readSequenceNumber(const std::filesystem::path& device);

}  // namespace tessel
