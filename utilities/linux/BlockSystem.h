#pragma once

#include <chrono>
#include <string>

#include "platform/FileDescriptor.h"
#include "utilities/linux/DiskSnapshot.h"

namespace tessel {

/// The operating system's view of its block devices, and the operations on them. Devices go by the kernel's
/// names. Calls may wait for the user, without a limit where they take no deadline. They throw PlatformError:
/// "User canceled." after a dismissed dialog, a text with "Resource busy" when another program uses the
/// device.
class BlockSystem {
  public:
    using Time = std::chrono::steady_clock::time_point;

    enum class EjectOutcome {
        ejected,
        impossible,  ///< the drive has no mechanism, it failed, or polkit does not allow it without asking
        busy,        ///< another program uses the drive
    };

    virtual ~BlockSystem() = default;

    /// Reads all block devices. Only for the disk with this identifier it also finds out whether a file
    /// system is in use where this program can't look, such as in a container; that may take a second.
    [[nodiscard]] virtual DiskSnapshot read(const std::string& identifier = {}) = 0;

    /// Removes one mount of the device. Fails while that is in use.
    virtual void unmount(const std::string& device, Time deadline) = 0;

    /// Opens the device for reading and writing past the caches. Fails while another program has claimed it.
    [[nodiscard]] virtual FileDescriptor open(const std::string& device) = 0;

    /// Writes everything that is still waiting in memory. Returns once that is done, but after 10 seconds or
    /// at the deadline at the latest: unmounting has already written the disk in question, and other disks
    /// may be slow.
    virtual void flush(Time deadline) = 0;

    [[nodiscard]] virtual EjectOutcome eject(const std::string& device, Time deadline) = 0;

    [[nodiscard]] virtual Time now() = 0;
    virtual void wait(std::chrono::milliseconds duration) = 0;
};

}  // namespace tessel
