#pragma once

#include <memory>

#include "platform/RawDevice.h"

namespace tessel {

/// Returns the device slowed down to the speed of a card: at most the given number of bytes per second, each
/// way.
[[nodiscard]] std::unique_ptr<RawDevice> makePacedDevice(std::unique_ptr<RawDevice> device,
                                                         double bytesPerSecond);

}  // namespace tessel
