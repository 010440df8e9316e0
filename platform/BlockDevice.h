#pragma once

#include <memory>

#include "platform/RawDevice.h"

namespace tessel {

/// Makes a device of an open whole disk, and locks it against other programs where the system has such a
/// lock. Whatever else was opened has no block size, nor has a disk that another program keeps locked, so
/// neither is ever written to.
[[nodiscard]] std::unique_ptr<RawDevice> makeBlockDevice(FileDescriptor descriptor);

}  // namespace tessel
