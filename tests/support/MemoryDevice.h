#pragma once

#include <cerrno>
#include <cstring>
#include <vector>

#include "platform/RawDevice.h"

namespace tessel {

/// The content of a device in memory, and what was done to it.
struct Medium {
    std::vector<std::byte> bytes;
    uint64_t blockSize = 512;

    std::vector<uint64_t> readOffsets = {};
    int writes = 0;
    int synchronizations = 0;
    Disturbance disturbance = Disturbance::none;
    bool isExchangedDuringWrite = false;  ///< whether another medium takes its place after a short write
};

class MemoryDevice : public RawDevice {
  public:
    explicit MemoryDevice(Medium& medium) : medium(medium) {}

    SystemResult blockSize() override { return {.value = medium.blockSize}; }
    SystemResult blockCount() override { return {.value = medium.bytes.size() / medium.blockSize}; }
    SystemResult disableCaching() override { return {}; }
    SystemResult synchronize() override {
        ++medium.synchronizations;
        return {};
    }
    Disturbance disturbance() override { return medium.disturbance; }

  protected:
    SystemResult writeSome(std::span<const std::byte> bytes, uint64_t offset) override {
        ++medium.writes;
        if (medium.isExchangedDuringWrite) {
            bytes = bytes.first(bytes.size() / 2);
            medium.disturbance = Disturbance::exchanged;
        }
        std::memcpy(medium.bytes.data() + offset, bytes.data(), bytes.size());
        return {.value = bytes.size()};
    }
    SystemResult readSome(std::span<std::byte> bytes, uint64_t offset) override {
        medium.readOffsets.push_back(offset);
        std::memcpy(bytes.data(), medium.bytes.data() + offset, bytes.size());
        return {.value = bytes.size()};
    }

  private:
    Medium& medium;
};

/// Returns bytes that differ from place to place, but are the same for the same seed.
inline std::vector<std::byte> patternedBytes(size_t size, uint32_t seed = 1) {
    std::vector<std::byte> bytes(size);
    uint32_t state = seed;
    for (auto& byte : bytes) {
        state = state * 1664525 + 1013904223;
        byte = static_cast<std::byte>(state >> 24);
    }
    return bytes;
}

}  // namespace tessel
