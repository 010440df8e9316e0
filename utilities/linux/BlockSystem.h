#pragma once

#include <chrono>
#include <string>

#include "platform/FileDescriptor.h"
#include "utilities/linux/Machine.h"

namespace tessel {

/// What can be asked of the operating system about its block devices. Devices are given by the kernel's
/// names. Calls may wait for a person, without a limit. They throw PlatformError, worded for that person; a
/// dialog that was dismissed is "User canceled.", a device that somebody uses contains "Resource busy".
class BlockSystem {
  public:
    enum class Ejection {
        done,
        impossible,  ///< the drive has no mechanism, or it failed
        busy,        ///< something is mounted
    };

    virtual ~BlockSystem() = default;

    [[nodiscard]] virtual Machine read() = 0;

    /// Ends one mount of the device, and fails when it is in use.
    virtual void unmount(const std::string& device) = 0;

    /// Opens for reading and writing, past the caches, and fails when anybody else uses the device.
    [[nodiscard]] virtual FileDescriptor open(const std::string& device) = 0;

    /// Has everything written that still waits in memory. Returns once it is, or after 10 seconds: what was
    /// mounted and is not any more was written then, and other disks may be slow.
    virtual void flush() = 0;

    [[nodiscard]] virtual Ejection eject(const std::string& device) = 0;

    virtual void wait(std::chrono::milliseconds duration) = 0;
};

}  // namespace tessel
