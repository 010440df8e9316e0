#pragma once

#include <cstdint>
#include <filesystem>

#include "platform/FileDescriptor.h"

namespace tessel {

/// A file attached as a block device. It goes away with this object, or with the process however that ends,
/// as soon as nobody else has it open.
class LoopDevice {
  public:
    struct Options {
        std::filesystem::path file;
        uint32_t blockSize = 512;   ///< bytes of a logical block
        bool usesDirectIO = false;  ///< past the cache of the file, where its file system can
    };

    /// Whether this user may attach files.
    [[nodiscard]] static bool isAvailable();

    /// Throws PlatformError.
    [[nodiscard]] explicit LoopDevice(const Options& options);

    /// Such as "/dev/loop3".
    [[nodiscard]] const std::filesystem::path& path() const { return devicePath; }

  private:
    FileDescriptor device;
    std::filesystem::path devicePath;
};

}  // namespace tessel
