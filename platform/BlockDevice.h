#pragma once

#include <memory>

#include "platform/RawDevice.h"

namespace tessel {

/// Returns a device for an open whole disk, locked against other programs where the system has such a lock.
/// For anything else, and for a disk that another program keeps locked, the device reports no block size, so
/// it is never written to.
[[nodiscard]] std::unique_ptr<RawDevice> makeBlockDevice(FileDescriptor descriptor);

}  // namespace tessel
