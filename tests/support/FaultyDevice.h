#pragma once

#include <cerrno>
#include <memory>
#include <utility>

#include "rehearsal/WrappedDevice.h"

namespace tessel {

/// A device that works but for one kind of call.
class FaultyDevice : public WrappedDevice {
  public:
    enum class Fault { none, secondWrite, read, synchronize };

    FaultyDevice(std::unique_ptr<RawDevice> device, Fault fault) :
        WrappedDevice(std::move(device)),
        fault(fault) {}
    SystemResult write(std::span<const std::byte> bytes, uint64_t offset) override {
        return fault == Fault::secondWrite && offset > 0 ? failure : WrappedDevice::write(bytes, offset);
    }
    SystemResult read(std::span<std::byte> bytes, uint64_t offset) override {
        return fault == Fault::read ? failure : WrappedDevice::read(bytes, offset);
    }
    SystemResult synchronize() override {
        return fault == Fault::synchronize ? failure : WrappedDevice::synchronize();
    }

  private:
    static constexpr SystemResult failure{.error = EIO};
    Fault fault;
};

}  // namespace tessel
