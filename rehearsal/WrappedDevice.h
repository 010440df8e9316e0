#pragma once

#include <memory>
#include <utility>

#include "platform/RawDevice.h"

namespace tessel {

/// Hands every call on to another device; derived classes change some of them.
class WrappedDevice : public RawDevice {
  public:
    explicit WrappedDevice(std::unique_ptr<RawDevice> device) : device(std::move(device)) {}

    SystemResult blockSize() override { return device->blockSize(); }
    SystemResult blockCount() override { return device->blockCount(); }
    SystemResult disableCaching() override { return device->disableCaching(); }
    SystemResult synchronize() override { return device->synchronize(); }
    Disturbance disturbance() override { return device->disturbance(); }

  protected:
    SystemResult writeSome(std::span<const std::byte> bytes, uint64_t offset) override {
        device->write(bytes, offset);
        return {.value = bytes.size()};
    }
    SystemResult readSome(std::span<std::byte> bytes, uint64_t offset) override {
        device->read(bytes, offset);
        return {.value = bytes.size()};
    }

  private:
    std::unique_ptr<RawDevice> device;
};

}  // namespace tessel
