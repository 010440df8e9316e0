#include "utilities/linux/system/DeviceLocks.h"

#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <cstdio>
#include <fstream>
#include <sstream>

namespace tessel {

namespace {

std::string nameInTable(const std::string& path) {
    struct stat status{};
    if (stat(path.c_str(), &status) != 0) return "";
    char name[64];
    std::snprintf(name, sizeof name, "%02x:%02x:%ju", major(status.st_dev), minor(status.st_dev),
                  uintmax_t{status.st_ino});
    return name;
}

}  // namespace

std::set<std::string> lockedFiles(std::istream& table) {
    std::set<std::string> files;
    for (std::string line; std::getline(table, line);) {
        std::istringstream words(line);
        std::string number, kind, mode, access, process, file;
        words >> number >> kind >> mode >> access >> process >> file;
        const bool isOnBytes = kind == "POSIX" || kind == "OFDLCK";
        if (isOnBytes || (kind == "FLOCK" && access == "WRITE")) files.insert(file);
    }
    return files;
}

void addLocks(Machine& machine) {
    std::ifstream table("/proc/locks");
    const auto files = lockedFiles(table);
    for (BlockDevice& device : machine.devices)
        device.isLocked = files.contains(nameInTable("/dev/" + device.name));
}

}  // namespace tessel
