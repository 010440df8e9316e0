#pragma once

#include <cstdint>
#include <filesystem>

namespace tessel::benchmark {

/// Limits how fast this process and its children read from and write to one block device, by means of the
/// block-I/O controller (version 1). The limit lasts until this object is destroyed.
class BlockThrottle {
  public:
    static bool isAvailable();

    BlockThrottle(const std::filesystem::path& device, uint64_t bytesPerSecond);
    BlockThrottle(const BlockThrottle&) = delete;
    BlockThrottle& operator=(const BlockThrottle&) = delete;
    ~BlockThrottle();
};

}  // namespace tessel::benchmark
