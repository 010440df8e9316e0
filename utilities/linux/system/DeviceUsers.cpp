#include "utilities/linux/system/DeviceUsers.h"

#include <array>
#include <cstdio>
#include <optional>

#include "utilities/linux/system/KernelFiles.h"

namespace tessel {

namespace {

struct Source {
    const char* pattern;  ///< of the files that name a device or file
    size_t namePlace;     ///< which folder of the path names the user, counted from the root
};

constexpr auto sources = std::to_array<Source>({
    {"/sys/block/*/loop/backing_file", 2},
    {"/sys/block/*/backing_dev", 2},  // compressed memory that overflows onto a disk
    {"/sys/kernel/config/target/core/*/*/udev_path", 6},
    {"/sys/kernel/config/nvmet/subsystems/*/namespaces/*/device_path", 5},
    {"/sys/kernel/config/usb_gadget/*/functions/mass_storage.*/*/file", 4},
    {"/sys/bus/xen-backend/devices/*/physical_device", 4},  // a disk of a virtual machine, as a number
});

std::string folderAt(size_t place, const std::string& path) {
    size_t begin = 1;
    for (; place > 0; --place)
        begin = path.find('/', begin) + 1;
    return path.substr(begin, path.find('/', begin) - begin);
}

/// Returns the path that the line is or, where it is the number of a device such as "8:1f" (hexadecimal), the
/// path of that device in sysfs. Absent where nothing is used.
std::optional<std::string> pathIn(const std::string& line) {
    unsigned major = 0;
    unsigned minor = 0;
    if (line.starts_with("/")) return line;
    if (std::sscanf(line.c_str(), "%x:%x", &major, &minor) != 2) return std::nullopt;
    return "/sys/dev/block/" + std::to_string(major) + ":" + std::to_string(minor);
}

}  // namespace

std::vector<DeviceUser> readDeviceUsers(const std::string& root) {
    std::vector<DeviceUser> users;
    for (const Source& source : sources) {
        for (const std::string& file : filesMatching(root + source.pattern)) {
            if (const auto path = pathIn(firstLineOf(file).value_or("")))
                users.push_back({folderAt(source.namePlace, file.substr(root.size())), *path});
        }
    }
    return users;
}

}  // namespace tessel
