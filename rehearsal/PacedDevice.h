#pragma once

#include <memory>

#include "platform/RawDevice.h"

namespace tessel {

/// Makes a device no faster than a card: it passes at most the given number of bytes per second, each way.
[[nodiscard]] std::unique_ptr<RawDevice> makePacedDevice(std::unique_ptr<RawDevice> device,
                                                         double bytesPerSecond);

}  // namespace tessel
