#pragma once

#include <memory>

#include "platform/RawDevice.h"

namespace tessel {

/// Makes a device of an open whole block device, and locks it against other programs. Whatever else was
/// opened has no block size ("Block device required"), nor has a device that another program keeps locked
/// ("Device or resource busy"), so neither is ever written to.
[[nodiscard]] std::unique_ptr<RawDevice> makeBlockDevice(FileDescriptor descriptor);

}  // namespace tessel
