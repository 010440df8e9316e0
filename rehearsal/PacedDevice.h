#pragma once

#include <memory>

#include "platform/RawDevice.h"

namespace tessel {

/// A device that is no faster than the given number of bytes per second, each way, as a card is.
[[nodiscard]] std::unique_ptr<RawDevice> makePacedDevice(std::unique_ptr<RawDevice> device,
                                                         double bytesPerSecond);

}  // namespace tessel
