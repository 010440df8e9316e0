#include "utilities/linux/system/DeviceLocks.h"

#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <utility>

#include "foundation/Errors.h"
#include "utilities/linux/system/OtherDeviceNodes.h"

namespace tessel {

namespace {

std::string nameInTable(const std::string& path) {
    struct stat status{};
    return stat(path.c_str(), &status) == 0 ? nameInLockTable(status) : "";
}

}  // namespace

std::set<std::string> lockedFiles(std::istream& table, pid_t self) {
    std::set<std::string> files;
    for (std::string line; std::getline(table, line);) {
        std::istringstream words(line);
        std::string number, kind, mode, access, process, file;
        words >> number >> kind >> mode >> access >> process >> file;
        const bool isOnBytes = kind == "POSIX" || kind == "OFDLCK";
        const bool isForeign = process != std::to_string(self);
        if (isOnBytes || (kind == "FLOCK" && access == "WRITE" && isForeign)) files.insert(file);
    }
    return files;
}

void addLocks(Machine& machine) {
    std::ifstream table("/proc/locks");
    auto files = lockedFiles(table, getpid());
    if (table.bad() || !table.eof()) throw posixError("/proc/locks could not be read", errno);
    for (BlockDevice& device : machine.devices)
        device.isLocked = files.erase(nameInTable("/dev/" + device.name)) > 0;
    addLocksOfOtherNodes(machine, std::move(files));
}

}  // namespace tessel
