#pragma once

#include <gtest/gtest.h>

#include <cerrno>
#include <memory>
#include <thread>
#include <utility>

#include "rehearsal/WrappedDevice.h"

namespace tessel {

/// A device that works except for one kind of call. It must not be closed on the main thread, because that
/// may block.
class FaultyDevice : public WrappedDevice {
  public:
    enum class Fault { none, secondWrite, read };

    FaultyDevice(std::unique_ptr<RawDevice> device, Fault fault) :
        WrappedDevice(std::move(device)),
        fault(fault) {}
    ~FaultyDevice() override { EXPECT_NE(std::this_thread::get_id(), mainThread); }

  protected:
    SystemResult writeSome(std::span<const std::byte> bytes, uint64_t offset) override {
        return fault == Fault::secondWrite && offset > 0 ? failure : WrappedDevice::writeSome(bytes, offset);
    }
    SystemResult readSome(std::span<std::byte> bytes, uint64_t offset) override {
        return fault == Fault::read ? failure : WrappedDevice::readSome(bytes, offset);
    }

  private:
    static inline const auto mainThread = std::this_thread::get_id();
    static constexpr SystemResult failure{.error = EIO};
    Fault fault;
};

}  // namespace tessel
