#pragma once

#include "platform/SystemResult.h"

/// What an open block device says of itself.
namespace tessel {

/// Whether it is a block device, and no partition of one.
[[nodiscard]] bool isWholeBlockDevice(int descriptor);

/// The kernel's number of the medium, which no other medium ever gets while the machine runs.
SystemResult diskSequenceNumber(int descriptor);

/// In bytes.
SystemResult mediumSize(int descriptor);

/// Takes the lock by which programs that look at disks know that this one is worked on. Waits two seconds at
/// most: the error is EBUSY when another program keeps it. It belongs to the open device, wherever its
/// descriptor is sent.
SystemResult lockExclusively(int descriptor);

}  // namespace tessel
