#include "rehearsal/PacedDevice.h"

#include <chrono>
#include <thread>
#include <utility>

namespace tessel {

namespace {

class PacedDevice : public RawDevice {
  public:
    PacedDevice(std::unique_ptr<RawDevice> device, double bytesPerSecond) :
        device(std::move(device)),
        bytesPerSecond(bytesPerSecond) {}

    SystemResult blockSize() override { return device->blockSize(); }
    SystemResult blockCount() override { return device->blockCount(); }
    SystemResult disableCaching() override { return device->disableCaching(); }
    SystemResult synchronize() override { return device->synchronize(); }
    SystemResult confirmSameMedium() override { return device->confirmSameMedium(); }

    SystemResult write(std::span<const std::byte> bytes, uint64_t offset) override {
        return paced([&] { return device->write(bytes, offset); });
    }
    SystemResult read(std::span<std::byte> bytes, uint64_t offset) override {
        return paced([&] { return device->read(bytes, offset); });
    }

  private:
    SystemResult paced(auto transfer) const {
        const auto begin = std::chrono::steady_clock::now();
        const SystemResult result = transfer();
        const std::chrono::duration<double> due(static_cast<double>(result.value) / bytesPerSecond);
        std::this_thread::sleep_until(begin + std::chrono::duration_cast<std::chrono::nanoseconds>(due));
        return result;
    }

    std::unique_ptr<RawDevice> device;
    double bytesPerSecond;
};

}  // namespace

std::unique_ptr<RawDevice> makePacedDevice(std::unique_ptr<RawDevice> device, double bytesPerSecond) {
    return std::make_unique<PacedDevice>(std::move(device), bytesPerSecond);
}

}  // namespace tessel
