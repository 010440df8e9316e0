#include "rehearsal/PacedDevice.h"

#include <chrono>
#include <thread>
#include <utility>

#include "rehearsal/WrappedDevice.h"

namespace tessel {

namespace {

class PacedDevice : public WrappedDevice {
  public:
    PacedDevice(std::unique_ptr<RawDevice> device, double bytesPerSecond) :
        WrappedDevice(std::move(device)),
        bytesPerSecond(bytesPerSecond) {}

  protected:
    SystemResult writeSome(std::span<const std::byte> bytes, uint64_t offset) override {
        return paced([&] { return WrappedDevice::writeSome(bytes, offset); });
    }
    SystemResult readSome(std::span<std::byte> bytes, uint64_t offset) override {
        return paced([&] { return WrappedDevice::readSome(bytes, offset); });
    }

  private:
    SystemResult paced(auto transfer) const {
        const auto begin = std::chrono::steady_clock::now();
        const SystemResult result = transfer();
        const std::chrono::duration<double> due(static_cast<double>(result.value) / bytesPerSecond);
        std::this_thread::sleep_until(begin + std::chrono::duration_cast<std::chrono::nanoseconds>(due));
        return result;
    }

    double bytesPerSecond;
};

}  // namespace

std::unique_ptr<RawDevice> makePacedDevice(std::unique_ptr<RawDevice> device, double bytesPerSecond) {
    return std::make_unique<PacedDevice>(std::move(device), bytesPerSecond);
}

}  // namespace tessel
