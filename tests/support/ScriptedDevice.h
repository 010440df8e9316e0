#pragma once

#include <algorithm>
#include <cstring>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "platform/RawDevice.h"

namespace tessel {

/// What a scripted device holds and how it misbehaves. A hook that answers replaces the call.
struct DeviceScript {
    using WriteHook = std::function<std::optional<SystemResult>(std::span<const std::byte>, uint64_t offset)>;
    using ReadHook = std::function<std::optional<SystemResult>(std::span<std::byte>, uint64_t offset)>;

    std::vector<std::byte> medium;
    uint64_t blockSize = 512;
    WriteHook onWrite;
    ReadHook onRead;
    std::function<SystemResult()> onSynchronize;
    std::function<SystemResult()> onConfirmSameMedium;

    std::vector<uint64_t> readOffsets;
    int writes = 0;
    int synchronizations = 0;
    int openDevices = 0;
};

/// A device in memory that does what no real one can be made to do.
class ScriptedDevice : public RawDevice {
  public:
    explicit ScriptedDevice(DeviceScript& script) : script(script) { ++script.openDevices; }
    ~ScriptedDevice() override { --script.openDevices; }

    SystemResult blockSize() override { return {.value = script.blockSize}; }
    SystemResult blockCount() override { return {.value = script.medium.size() / script.blockSize}; }
    SystemResult disableCaching() override { return {}; }

    SystemResult write(std::span<const std::byte> bytes, uint64_t offset) override {
        ++script.writes;
        if (script.onWrite) {
            if (const auto answer = script.onWrite(bytes, offset)) return *answer;
        }
        std::memcpy(script.medium.data() + offset, bytes.data(), bytes.size());
        return {.value = bytes.size()};
    }

    SystemResult read(std::span<std::byte> bytes, uint64_t offset) override {
        script.readOffsets.push_back(offset);
        if (script.onRead) {
            if (const auto answer = script.onRead(bytes, offset)) return *answer;
        }
        std::memcpy(bytes.data(), script.medium.data() + offset, bytes.size());
        return {.value = bytes.size()};
    }

    SystemResult synchronize() override {
        ++script.synchronizations;
        return script.onSynchronize ? script.onSynchronize() : SystemResult();
    }

    SystemResult confirmSameMedium() override {
        return script.onConfirmSameMedium ? script.onConfirmSameMedium() : SystemResult();
    }

  private:
    DeviceScript& script;
};

/// Makes bytes that differ from place to place, but are the same for the same seed.
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
