#include "utilities/linux/system/DeviceLocks.h"

#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <sstream>
#include <utility>
#include <vector>

#include "foundation/Errors.h"
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

/// Returns how the table names a file.
std::string nameInTable(const struct stat& status) {
    return fileSystemNumber(status.st_dev) + ":" + std::to_string(status.st_ino);
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
        if (lstat(entry->path().c_str(), &status) == 0 && nameInTable(status) == lockedFile) return status;
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
void noteLock(DiskSnapshot& snapshot, const std::optional<struct stat>& node) {
    if (!node) snapshot.isDiskLockedElsewhere = true;
    if (node && S_ISBLK(node->st_mode))
        changeDevice(snapshot, deviceName(node->st_rdev),
                     [](KernelDevice& device) { device.isLocked = true; });
}

/// Returns how the table names the file at this path; empty when there is none.
std::string nameInTable(const std::string& path) {
    struct stat status{};
    return stat(path.c_str(), &status) == 0 ? nameInTable(status) : "";
}

/// Notes which devices are locked through a node in the /dev of another mount namespace, as those of system
/// virtual machines and containers. Where this user may not look into such a folder, some disk is noted as
/// locked.
void addLocksOfOtherNodes(DiskSnapshot& snapshot, std::set<std::string> lockedFiles) {
    removeOwnFiles(lockedFiles);
    if (lockedFiles.empty()) return;
    for (const auto& process : processes()) {
        const std::string deviceFolder = fileSystemsByTarget(process)["/dev"];
        std::erase_if(lockedFiles, [&](const std::string& lockedFile) {
            if (fileSystemOf(lockedFile) != deviceFolder) return false;
            noteLock(snapshot, findFile(process / "root/dev", lockedFile));
            return true;
        });
    }
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

void addLocks(DiskSnapshot& snapshot) {
    std::ifstream table("/proc/locks");
    auto files = lockedFiles(table, getpid());
    if (table.bad() || !table.eof()) throw posixError("/proc/locks could not be read", errno);
    for (KernelDevice& device : snapshot.devices)
        device.isLocked = files.erase(nameInTable("/dev/" + device.name)) > 0;
    addLocksOfOtherNodes(snapshot, std::move(files));
}

}  // namespace tessel
