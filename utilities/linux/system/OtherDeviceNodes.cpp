#include "utilities/linux/system/OtherDeviceNodes.h"

#include <sys/sysmacros.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <sstream>
#include <vector>

#include "utilities/linux/system/DeviceUses.h"
#include "utilities/linux/system/KernelFiles.h"

namespace tessel {

namespace {

/// Returns the number of a file system as the table of locks has it: the "00:05" of "00:05:345".
std::string fileSystemNumber(dev_t number) {
    char text[32];
    std::snprintf(text, sizeof text, "%02x:%02x", major(number), minor(number));
    return text;
}

/// Returns the file system of a file that is named as in the table of locks.
std::string fileSystemOf(const std::string& lockedFile) {
    return lockedFile.substr(0, lockedFile.rfind(':'));
}

/// Returns which file systems are mounted where for the process with this folder in /proc; nothing if it has
/// ended.
std::map<std::string, std::string> fileSystemsByTarget(const std::filesystem::path& process) {
    std::map<std::string, std::string> fileSystems;
    std::ifstream mounts(process / "mountinfo");
    for (std::string line; std::getline(mounts, line);) {
        std::istringstream words(line);
        unsigned identifier = 0, parent = 0, majorNumber = 0, minorNumber = 0;
        char colon = 0;
        std::string root, target;
        words >> identifier >> parent >> majorNumber >> colon >> minorNumber >> root >> target;
        fileSystems[target] = fileSystemNumber(makedev(majorNumber, minorNumber));
    }
    return fileSystems;
}

/// Removes the files of those file systems that this process sees, too: their nodes are already known.
void removeOwnFiles(std::set<std::string>& files) {
    for (const auto& [target, fileSystem] : fileSystemsByTarget("/proc/self"))
        std::erase_if(files, [&](const std::string& file) { return fileSystemOf(file) == fileSystem; });
}

/// Returns the processes, as their folders in /proc.
std::vector<std::filesystem::path> processes() {
    std::vector<std::filesystem::path> folders;
    for (const std::string& name : namesIn("/proc"))
        if (name.find_first_not_of("0123456789") == std::string::npos) folders.push_back("/proc/" + name);
    return folders;
}

/// Returns what is known of the file with this name in the table of locks; nothing when this user may not
/// look for it.
std::optional<struct stat> findFile(const std::filesystem::path& folder, const std::string& lockedFile) {
    std::error_code refusal;
    for (auto entry = std::filesystem::recursive_directory_iterator(folder, refusal);
         !refusal && entry != std::filesystem::recursive_directory_iterator(); entry.increment(refusal)) {
        struct stat status{};
        if (lstat(entry->path().c_str(), &status) == 0 && nameInLockTable(status) == lockedFile)
            return status;
    }
    return std::nullopt;
}

std::string deviceName(dev_t number) {
    std::error_code isMissing;
    return std::filesystem::canonical(
               "/sys/dev/block/" + std::to_string(major(number)) + ":" + std::to_string(minor(number)),
               isMissing)
        .filename()
        .string();
}

/// Notes that a node is locked, or an unknown one.
void noteLock(Machine& machine, const std::optional<struct stat>& node) {
    if (!node) machine.isDiskLockedElsewhere = true;
    if (node && S_ISBLK(node->st_mode))
        changeDevice(machine, deviceName(node->st_rdev), [](BlockDevice& device) { device.isLocked = true; });
}

}  // namespace

std::string nameInLockTable(const struct stat& status) {
    return fileSystemNumber(status.st_dev) + ":" + std::to_string(status.st_ino);
}

void addLocksOfOtherNodes(Machine& machine, std::set<std::string> lockedFiles) {
    removeOwnFiles(lockedFiles);
    if (lockedFiles.empty()) return;
    for (const auto& process : processes()) {
        const std::string deviceFolder = fileSystemsByTarget(process)["/dev"];
        std::erase_if(lockedFiles, [&](const std::string& lockedFile) {
            if (fileSystemOf(lockedFile) != deviceFolder) return false;
            noteLock(machine, findFile(process / "root/dev", lockedFile));
            return true;
        });
    }
}

}  // namespace tessel
