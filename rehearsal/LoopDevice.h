#pragma once

#include <cstdint>
#include <filesystem>

#include "platform/FileDescriptor.h"

namespace tessel {

/// A file attached as a block device. It is detached once this object is gone or the process has ended in
/// whatever way, and no other program has it open.
class LoopDevice {
  public:
    struct Options {
        std::filesystem::path file;
        uint32_t blockSize = 512;  ///< of a logical block, in bytes
    };

    /// Returns whether this user may attach files.
    [[nodiscard]] static bool isAvailable();

    /// Attaches the file. Throws PlatformError.
    [[nodiscard]] explicit LoopDevice(const Options& options);

    /// Returns the path of the device, such as "/dev/loop3".
    [[nodiscard]] const std::filesystem::path& path() const { return devicePath; }

  private:
    FileDescriptor device;
    std::filesystem::path devicePath;
};

}  // namespace tessel
