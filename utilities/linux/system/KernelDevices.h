#pragma once

#include <filesystem>

#include "utilities/linux/DiskSnapshot.h"

namespace tessel {

/// Reads what the kernel and the device database say about all block devices and their use. The records of
/// UDisks2 and the second reading of the sequence numbers remain to be filled in. Throws PlatformError when
/// the table of mounts can't be read.
[[nodiscard]] DiskSnapshot readKernelDevices();

/// Reads the disk sequence number that the device with this path in the kernel's tree has at this moment; 0
/// when it has none.
[[nodiscard]] uint64_t readSequenceNumber(const std::filesystem::path& device);

}  // namespace tessel
