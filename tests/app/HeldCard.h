#pragma once

#include <atomic>
#include <memory>

#include "platform/RawDevice.h"

namespace tessel {

/// Holds up the transfers beyond the first chunk of a card, as long as wanted.
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

/// A card that can be held up while it is written, and while it is read.
class HeldCard : public RawDevice {
  public:
    struct Holds {
        CardHold writing;
        CardHold reading;
    };

    HeldCard(std::unique_ptr<RawDevice> device, const Holds& holds) :
        device(std::move(device)),
        holds(holds) {}

    SystemResult blockSize() override { return device->blockSize(); }
    SystemResult blockCount() override { return device->blockCount(); }
    SystemResult disableCaching() override { return device->disableCaching(); }
    SystemResult synchronize() override { return device->synchronize(); }
    SystemResult confirmSameMedium() override { return device->confirmSameMedium(); }
    SystemResult write(std::span<const std::byte> bytes, uint64_t offset) override {
        if (offset > 0) holds.writing.waitWhileHeld();
        return device->write(bytes, offset);
    }
    SystemResult read(std::span<std::byte> bytes, uint64_t offset) override {
        if (offset > 0) holds.reading.waitWhileHeld();
        return device->read(bytes, offset);
    }

  private:
    std::unique_ptr<RawDevice> device;
    const Holds& holds;
};

}  // namespace tessel
