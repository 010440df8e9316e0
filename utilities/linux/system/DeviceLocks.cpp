#include "utilities/linux/system/DeviceLocks.h"

#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <cstdio>
#include <fstream>
#include <set>
#include <sstream>

namespace tessel {

namespace {

/// Returns the files that carry an exclusive lock or, as virtual machines and storage servers make them, one
/// on a range of bytes. They are named as in the kernel's table: by the number of the file system and that of
/// the file in it, such as "00:05:345".
std::set<std::string> readLockedFiles() {
    std::set<std::string> files;
    std::ifstream table("/proc/locks");
    for (std::string line; std::getline(table, line);) {
        std::istringstream words(line);
        std::string number, kind, mode, access, process, file;
        words >> number >> kind >> mode >> access >> process >> file;
        const bool isOnBytes = kind == "POSIX" || kind == "OFDLCK";
        if (isOnBytes || (kind == "FLOCK" && access == "WRITE")) files.insert(file);
    }
    return files;
}

std::string nameInTable(const std::string& path) {
    struct stat status{};
    if (stat(path.c_str(), &status) != 0) return "";
    char name[64];
    std::snprintf(name, sizeof name, "%02x:%02x:%ju", major(status.st_dev), minor(status.st_dev),
                  uintmax_t{status.st_ino});
    return name;
}

}  // namespace

void addLocks(Machine& machine) {
    const auto files = readLockedFiles();
    for (BlockDevice& device : machine.devices)
        device.isLocked = files.contains(nameInTable("/dev/" + device.name));
}

}  // namespace tessel
