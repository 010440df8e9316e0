#pragma once

#include <memory>

#include "platform/RawDevice.h"

namespace tessel {

/// A whole disk, locked against whoever else works on it where the system has such a lock. Anything else has
/// no block size, nor has a disk that another program locked; so neither is written.
[[nodiscard]] std::unique_ptr<RawDevice> makeBlockDevice(FileDescriptor descriptor);

}  // namespace tessel
