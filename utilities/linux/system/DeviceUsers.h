#pragma once

#include <string>
#include <vector>

namespace tessel {

/// Something in the kernel that works on a block device or a file without being a holder of it.
struct DeviceUser {
    std::string name;  ///< such as "loop3"
    std::string path;  ///< of the device, in /dev or in sysfs, or of the file
};

/// Reads all that the kernel's files reveal; the paths of those files begin with `root`. Throws PlatformError
/// when one of them can't be read.
[[nodiscard]] std::vector<DeviceUser> readDeviceUsers(const std::string& root = "");

}  // namespace tessel
