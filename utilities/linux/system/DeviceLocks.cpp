#include "utilities/linux/system/DeviceLocks.h"

#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
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

/// Returns the number of a file system as in the table of locks: the "00:05" of "00:05:345".
std::string fileSystemNumber(dev_t number) {
    char text[32];
    std::snprintf(text, sizeof text, "%02x:%02x", major(number), minor(number));
    return text;
}

/// Returns the name of a file in the table of locks.
std::string nameInTable(const struct stat& status) {
    return fileSystemNumber(status.st_dev) + ":" + std::to_string(status.st_ino);
}

/// Returns the file system of a file that is named as in the table of locks.
std::string fileSystemOf(const std::string& lockedFile) {
    return lockedFile.substr(0, lockedFile.rfind(':'));
}

/// Returns the file systems by the folders where they are mounted, for the process with this folder in /proc;
/// none if it has ended.
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

/// Removes the files of file systems that this process sees, too: their nodes have been checked already.
void removeOwnFiles(std::set<std::string>& files) {
    std::set<std::string> own;
    for (const auto& [target, fileSystem] : fileSystemsByTarget("/proc/self"))
        own.insert(fileSystem);
    std::erase_if(files, [&own](const std::string& file) { return own.contains(fileSystemOf(file)); });
}

/// Returns the folders of the processes in /proc.
std::vector<std::filesystem::path> processes() {
    std::vector<std::filesystem::path> folders;
    for (const std::string& name : namesIn("/proc"))
        if (name.find_first_not_of("0123456789") == std::string::npos) folders.push_back("/proc/" + name);
    return folders;
}

enum class Search {
    found,
    absent,
    refused,  ///< this user may not look everywhere
};

/// Looks for the file with this name in the table of locks, at this path and below it.
Search findFile(const std::filesystem::path& path, const std::string& lockedFile, struct stat& file) {
    if (lstat(path.c_str(), &file) != 0) return errno == ENOENT ? Search::absent : Search::refused;
    if (nameInTable(file) == lockedFile) return Search::found;
    if (!S_ISDIR(file.st_mode) || fileSystemNumber(file.st_dev) != fileSystemOf(lockedFile))
        return Search::absent;
    std::error_code refusal;
    Search result = Search::absent;
    for (const auto& entry : std::filesystem::directory_iterator(path, refusal)) {
        const Search inEntry = findFile(entry.path(), lockedFile, file);
        if (inEntry == Search::found) return inEntry;
        if (inEntry == Search::refused) result = inEntry;
    }
    return refusal ? Search::refused : result;
}

/// Returns whether the folder is /dev or one in it that may hold device nodes.
bool holdsDeviceNodes(const std::string& folder) {
    static constexpr std::array others{"/dev/shm", "/dev/pts", "/dev/mqueue", "/dev/hugepages"};
    return folder == "/dev" ||
           (folder.starts_with("/dev/") && std::ranges::find(others, folder) == others.end());
}

/// Returns whether the process may own a device node; in a user namespace of its own it can't make any.
bool mayOwnDeviceNodes(const std::filesystem::path& process) {
    return firstLineOf(process / "uid_map") == firstLineOf("/proc/self/uid_map");
}

/// A folder of device nodes, by a path on which this process can read it.
struct NodeFolder {
    std::filesystem::path path;
    std::string fileSystem;
};

/// Returns every folder of device nodes that some process has, several times if processes share it.
std::vector<NodeFolder> nodeFolders() {
    std::vector<NodeFolder> folders;
    for (const auto& process : processes()) {
        if (!mayOwnDeviceNodes(process)) continue;
        for (const auto& [folder, fileSystem] : fileSystemsByTarget(process))
            if (holdsDeviceNodes(folder))
                folders.push_back({process / "root" / folder.substr(1), fileSystem});
    }
    return folders;
}

/// Looks for a locked file in these folders, and marks its device as locked. If this user is not allowed to
/// see where the file is, marks some disk as locked.
void addLockOfNode(DiskSnapshot& snapshot, const std::vector<NodeFolder>& folders,
                   const std::string& lockedFile) {
    bool isDoubtful = !std::filesystem::exists("/proc/1");  // /proc may show only the user's own processes
    for (const auto& [path, fileSystem] : folders) {
        if (fileSystem != fileSystemOf(lockedFile)) continue;
        struct stat file{};
        const Search search = findFile(path, lockedFile, file);
        if (search == Search::refused) isDoubtful = true;
        if (search != Search::found) continue;
        if (S_ISBLK(file.st_mode))
            changeDevice(snapshot, blockDeviceName(file.st_rdev),
                         [](KernelDevice& device) { device.isLocked = true; });
        return;
    }
    snapshot.isDiskLockedElsewhere |= isDoubtful;
}

/// Throws PlatformError where users or processes have a namespace of their own, as in a sandbox: the table
/// then lacks the locks of processes outside, or these can't be asked for their device nodes.
void requireViewOfAllProcesses() {
    // The kernel gives its first namespaces fixed numbers.
    for (const auto& [link, first] : {std::pair("/proc/self/ns/pid", "pid:[4026531836]"),
                                      std::pair("/proc/self/ns/user", "user:[4026531837]")}) {
        std::error_code failure;
        if (std::filesystem::read_symlink(link, failure) != first)
            throw PlatformError(EPERM, "The locks of other processes are hidden by a sandbox.");
    }
}

/// Returns the name in the table of locks of the file at this path; empty when there is none.
std::string nameInTable(const std::string& path) {
    struct stat status{};
    return stat(path.c_str(), &status) == 0 ? nameInTable(status) : "";
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
    requireViewOfAllProcesses();
    std::ifstream table("/proc/locks");
    auto files = lockedFiles(table, getpid());
    if (table.bad() || !table.eof()) throw posixError("/proc/locks could not be read", errno);
    for (KernelDevice& device : snapshot.devices)
        device.isLocked = files.erase(nameInTable("/dev/" + device.name)) > 0;
    // The remaining locks may be held through device nodes of system virtual machines and containers.
    removeOwnFiles(files);
    if (files.empty()) return;
    const auto folders = nodeFolders();
    for (const std::string& file : files)
        addLockOfNode(snapshot, folders, file);
}

}  // namespace tessel
