#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "platform/RawDevice.h"

/// Complete calls on a raw device. Each either does all that it was asked to, or throws a TesselError that
/// says what failed. No byte is moved once the medium has been disturbed.
namespace tessel {

void writeFully(RawDevice& device, std::span<const std::byte> bytes, uint64_t offset);

void readFully(RawDevice& device, std::span<std::byte> bytes, uint64_t offset);

/// Flushes what was written, so that the medium itself holds it.
void synchronizeDevice(RawDevice& device);

/// Throws TesselError unless the device still has the medium that was opened, and no other program has
/// written to it.
void requireUndisturbed(RawDevice& device);

}  // namespace tessel
