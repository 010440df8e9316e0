#pragma once

#include <utility>

#include "platform/FileDescriptor.h"
#include "platform/RawDevice.h"

namespace tessel {

/// Does what is the same for every device with a descriptor; derived classes add the rest.
class DescriptorDevice : public RawDevice {
  public:
    explicit DescriptorDevice(FileDescriptor descriptor) : descriptor(std::move(descriptor)) {}

    SystemResult synchronize() override;

  protected:
    SystemResult writeSome(std::span<const std::byte> bytes, uint64_t offset) override;
    SystemResult readSome(std::span<std::byte> bytes, uint64_t offset) override;

    FileDescriptor descriptor;
};

}  // namespace tessel
