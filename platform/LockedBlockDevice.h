#pragma once

#include <memory>

#include "platform/RawDevice.h"

namespace tessel {

/// A whole block device, locked against whoever else works on it. Anything else has no block size ("Block
/// device required"), nor has one that another program locked ("Device or resource busy"); so neither is
/// written.
[[nodiscard]] std::unique_ptr<RawDevice> makeBlockDevice(FileDescriptor descriptor);

}  // namespace tessel
