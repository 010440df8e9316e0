#pragma once

#include <memory>

#include "platform/RawDevice.h"

namespace tessel {

/// Returns a device for the descriptor. Without block devices, a regular file plays a card of 512-byte
/// blocks; a block device is used as it is.
[[nodiscard]] std::unique_ptr<RawDevice> makeRehearsalDevice(FileDescriptor descriptor);

}  // namespace tessel
