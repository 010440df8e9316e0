#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "model/TesselError.h"
#include "platform/RawDevice.h"

/// The calls on a raw device that a transfer makes, which report their failures as a TesselError. A
/// DisturbedMediumError passes through.
namespace tessel {

void writeToDevice(RawDevice& device, std::span<const std::byte> bytes, uint64_t offset);

void readForVerification(RawDevice& device, std::span<std::byte> bytes, uint64_t offset);

/// Flushes what was written, so that the medium itself holds it.
void synchronizeDevice(RawDevice& device);

/// Returns the error that ends a transfer after a disturbance.
[[nodiscard]] TesselError disturbanceFailure(const DisturbedMediumError& error);

/// Returns the error for an offset that the system can't address.
[[nodiscard]] TesselError offsetFailure();

}  // namespace tessel
