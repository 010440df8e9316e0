#include "utilities/linux/system/DeviceUsers.h"

#include <glob.h>

#include <array>
#include <fstream>

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
});

std::vector<std::string> filesMatching(const std::string& pattern) {
    glob_t found{};
    std::vector<std::string> files;
    if (glob(pattern.c_str(), 0, nullptr, &found) == 0)
        files.assign(found.gl_pathv, found.gl_pathv + found.gl_pathc);
    globfree(&found);
    return files;
}

std::string folderAt(size_t place, const std::string& path) {
    size_t begin = 1;
    for (; place > 0; --place)
        begin = path.find('/', begin) + 1;
    return path.substr(begin, path.find('/', begin) - begin);
}

}  // namespace

std::vector<DeviceUser> readDeviceUsers(const std::string& root) {
    std::vector<DeviceUser> users;
    for (const Source& source : sources) {
        for (const std::string& file : filesMatching(root + source.pattern)) {
            std::string path;
            std::getline(std::ifstream(file), path);
            if (path.starts_with("/"))
                users.push_back({folderAt(source.namePlace, file.substr(root.size())), path});
        }
    }
    return users;
}

}  // namespace tessel
