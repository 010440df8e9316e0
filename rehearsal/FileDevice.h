#pragma once

#include <memory>

#include "platform/RawDevice.h"

namespace tessel {

/// Lets a regular file play a card of 512-byte blocks where block devices can't be had. A block device stays
/// what it is.
[[nodiscard]] std::unique_ptr<RawDevice> makeRehearsalDevice(FileDescriptor descriptor);

}  // namespace tessel
