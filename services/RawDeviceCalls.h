#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "platform/RawDevice.h"

/// What is asked of a raw device, each until it is done completely, with its failures worded: all throw
/// TesselError.
namespace tessel {

void writeFully(RawDevice& device, std::span<const std::byte> bytes, uint64_t offset);

void readFully(RawDevice& device, std::span<std::byte> bytes, uint64_t offset);

/// Makes the medium itself keep what was written.
void synchronizeDevice(RawDevice& device);

/// Nothing is written to, or believed of, a card that took the place of another: throws diskChanged.
void requireSameMedium(RawDevice& device);

}  // namespace tessel
