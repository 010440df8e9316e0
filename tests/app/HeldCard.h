#pragma once

#include <atomic>
#include <memory>
#include <utility>

#include "rehearsal/WrappedDevice.h"

namespace tessel {

/// Delays the transfers beyond the first chunk of a card for as long as it is told to.
class CardHold {
  public:
    void hold() { isHolding = true; }
    void release() {
        isHolding = false;
        isHolding.notify_all();
    }
    void waitWhileHeld() const { isHolding.wait(true); }

  private:
    std::atomic<bool> isHolding = false;
};

/// Delays every inspection of a file named "slow.img", like a disk that no longer answers.
extern CardHold slowImage;

/// A card that can be held up while it is written, and while it is read.
class HeldCard : public WrappedDevice {
  public:
    struct Holds {
        CardHold writing;
        CardHold reading;
    };

    HeldCard(std::unique_ptr<RawDevice> device, const Holds& holds) :
        WrappedDevice(std::move(device)),
        holds(holds) {}

  protected:
    SystemResult writeSome(std::span<const std::byte> bytes, uint64_t offset) override {
        if (offset > 0) holds.writing.waitWhileHeld();
        return WrappedDevice::writeSome(bytes, offset);
    }
    SystemResult readSome(std::span<std::byte> bytes, uint64_t offset) override {
        if (offset > 0) holds.reading.waitWhileHeld();
        return WrappedDevice::readSome(bytes, offset);
    }

  private:
    const Holds& holds;
};

}  // namespace tessel
