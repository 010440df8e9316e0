#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

#include "model/TesselError.h"
#include "platform/RawDevice.h"

namespace tessel {

/// An open raw device, read-write and uncached, with its geometry. Destroying the handle closes the device.
struct AuthorizedRawDiskHandle {
    std::unique_ptr<RawDevice> device;
    uint64_t blockSize = 0;   ///< of a logical block, in bytes; a power of two from 512 to 1,048,576
    uint64_t blockCount = 0;  ///< of the medium; never 0

    /// Returns whether the medium has exactly this capacity in bytes.
    bool hasCapacity(uint64_t bytes) const {
        return bytes % blockSize == 0 && bytes / blockSize == blockCount;
    }
    /// Returns whether that many bytes fit on the medium.
    bool holds(uint64_t bytes) const { return bytes / blockSize + (bytes % blockSize != 0) <= blockCount; }
};

/// Opens raw devices by means of the operating system's authorization utility, since this program may not
/// open them itself.
class RawDiskOpener {
  public:
    RawDiskOpener(std::filesystem::path authorizationUtility, RawDeviceFactory makeDevice) :
        authorizationUtility(std::move(authorizationUtility)),
        makeDevice(std::move(makeDevice)) {}

    /// Opens a raw device such as "/dev/rdisk4". Blocks until the utility has ended, however long the user
    /// takes to answer its prompt. Throws TesselError, which is operationCancelled if the prompt is
    /// dismissed, and PlatformError if the utility can't be watched. Closes whatever it opened before it
    /// throws. Requires: it is called on a background thread.
    AuthorizedRawDiskHandle openAuthorizedRawDisk(const std::string& devicePath) const;

  private:
    FileDescriptor launchAuthorizationUtility(const std::string& devicePath) const;

    std::filesystem::path authorizationUtility;
    RawDeviceFactory makeDevice;
};

/// Returns the error that the utility's text on standard error stands for.
[[nodiscard]] TesselError authorizationFailure(const std::string& errorText);

}  // namespace tessel
