#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

#include "model/TesselError.h"
#include "platform/RawDevice.h"

namespace tessel {

/// An open raw device, read-write and uncached, with its geometry. Dropping the handle closes the device.
struct AuthorizedRawDiskHandle {
    std::unique_ptr<RawDevice> device;
    uint64_t blockSize = 0;   ///< of a logical block in bytes: a power of two from 512 to 1,048,576
    uint64_t blockCount = 0;  ///< of the medium; never 0

    /// Whether the medium is exactly that large.
    bool hasCapacity(uint64_t bytes) const {
        return bytes % blockSize == 0 && bytes / blockSize == blockCount;
    }
    /// Whether that many bytes fit on the medium.
    bool holds(uint64_t bytes) const { return bytes / blockSize + (bytes % blockSize != 0) <= blockCount; }
};

/// Has the operating system's authorization utility open raw devices, since this program may not.
class RawDiskOpener {
  public:
    RawDiskOpener(std::filesystem::path authorizationUtility, RawDeviceFactory makeDevice) :
        authorizationUtility(std::move(authorizationUtility)),
        makeDevice(std::move(makeDevice)) {}

    /// Opens "/dev/rdisk4" or the like. Blocks until the utility has ended, however long the person takes to
    /// answer its prompt; call it on a background thread. Throws CancellationError for a refused prompt,
    /// PlatformError when the utility can't be watched, and TesselError for everything else. Whatever was
    /// opened is closed before it throws.
    AuthorizedRawDiskHandle openAuthorizedRawDisk(const std::string& devicePath) const;

  private:
    FileDescriptor launchAuthorizationUtility(const std::string& devicePath) const;

    std::filesystem::path authorizationUtility;
    RawDeviceFactory makeDevice;
};

/// Throws what the utility's words on standard error mean: CancellationError or TesselError.
[[noreturn]] void throwAuthorizationFailure(const std::string& errorText);

}  // namespace tessel
