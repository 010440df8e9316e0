#pragma once

#include <filesystem>

#include "platform/SystemResult.h"

/// Asks the kernel about an open block device.
namespace tessel {

/// Returns the folder in sysfs that describes the device.
[[nodiscard]] std::filesystem::path sysfsFolder(int descriptor);

/// Returns whether it is a block device and not a partition of one.
[[nodiscard]] bool isWholeBlockDevice(int descriptor);

/// Returns the kernel's number for the medium, which no other medium gets while the machine runs.
SystemResult diskSequenceNumber(int descriptor);

/// Returns the size of the medium in bytes.
SystemResult mediumSize(int descriptor);

/// Takes the lock by which disk programs tell each other to leave a disk alone. Waits for at most two
/// seconds; the error is EBUSY if another program keeps the lock. The lock belongs to the open device,
/// wherever its descriptor is sent.
SystemResult lockExclusively(int descriptor);

}  // namespace tessel
