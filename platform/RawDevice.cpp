#include "platform/RawDevice.h"

#include <unistd.h>

#include "platform/Transfer.h"

namespace tessel {

void RawDevice::write(std::span<const std::byte> bytes, uint64_t offset) {
    transferFully(bytes, offset, [this](std::span<const std::byte> rest, uint64_t at) {
        requireUndisturbed();
        return writeSome(rest, at);
    });
}

void RawDevice::read(std::span<std::byte> bytes, uint64_t offset) {
    transferFully(bytes, offset, [this](std::span<std::byte> rest, uint64_t at) {
        requireUndisturbed();
        return readSome(rest, at);
    });
}

void RawDevice::requireUndisturbed() {
    const auto found = disturbance();
    if (found != Disturbance::none) throw DisturbedMediumError(found);
}

SystemResult DescriptorDevice::writeSome(std::span<const std::byte> bytes, uint64_t offset) {
    return SystemResult::from(
        pwrite(descriptor.get(), bytes.data(), bytes.size(), static_cast<off_t>(offset)));
}

SystemResult DescriptorDevice::readSome(std::span<std::byte> bytes, uint64_t offset) {
    return SystemResult::from(
        pread(descriptor.get(), bytes.data(), bytes.size(), static_cast<off_t>(offset)));
}

SystemResult DescriptorDevice::synchronize() {
    return SystemResult::from(fsync(descriptor.get()));
}

}  // namespace tessel
