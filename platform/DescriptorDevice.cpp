#include "platform/DescriptorDevice.h"

#include <unistd.h>

namespace tessel {

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
