#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "platform/RawDevice.h"

/// Complete calls on a raw device. Each either does all that it was asked to, or throws a TesselError that
/// says what failed.
namespace tessel {

void writeFully(RawDevice& device, std::span<const std::byte> bytes, uint64_t offset);

void readFully(RawDevice& device, std::span<std::byte> bytes, uint64_t offset);

/// Flushes what was written, so that the medium itself holds it.
void synchronizeDevice(RawDevice& device);

/// Throws diskChanged if another card has taken the place of this one.
void requireSameMedium(RawDevice& device);

}  // namespace tessel
