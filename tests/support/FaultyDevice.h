#pragma once

#include <memory>

#include "platform/RawDevice.h"

namespace tessel {

/// A working device, but for one kind of call.
class FaultyDevice : public RawDevice {
  public:
    enum class Fault { none, secondWrite, read, synchronize };

    FaultyDevice(std::unique_ptr<RawDevice> device, Fault fault) : device(std::move(device)), fault(fault) {}
    SystemResult blockSize() override { return device->blockSize(); }
    SystemResult blockCount() override { return device->blockCount(); }
    SystemResult disableCaching() override { return device->disableCaching(); }
    SystemResult write(std::span<const std::byte> bytes, uint64_t offset) override {
        return fault == Fault::secondWrite && offset > 0 ? failure : device->write(bytes, offset);
    }
    SystemResult read(std::span<std::byte> bytes, uint64_t offset) override {
        return fault == Fault::read ? failure : device->read(bytes, offset);
    }
    SystemResult synchronize() override {
        return fault == Fault::synchronize ? failure : device->synchronize();
    }

  private:
    static constexpr SystemResult failure{.error = EIO};
    std::unique_ptr<RawDevice> device;
    Fault fault;
};

}  // namespace tessel
