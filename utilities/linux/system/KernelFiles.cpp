#include "utilities/linux/system/KernelFiles.h"

#include <fcntl.h>
#include <glob.h>
#include <unistd.h>

#include <array>
#include <cerrno>

#include "foundation/Errors.h"
#include "platform/FileDescriptor.h"

namespace tessel {

namespace {

/// Returns whether the error means that something isn't there. The kernel has answers of its own for a device
/// that is being removed and a process that has ended.
bool isAbsence(int error) {
    return error == ENOENT || error == ENOTDIR || error == ENODEV || error == ENXIO || error == ESRCH;
}

int refuseUnlessAbsent(const char*, int error) {
    return isAbsence(error) ? 0 : 1;
}

}  // namespace

std::optional<std::string> firstLineOf(const std::filesystem::path& file) {
    const FileDescriptor descriptor(open(file.c_str(), O_RDONLY | O_CLOEXEC));
    std::array<char, 4096> bytes{};  // the kernel returns no more at once
    const ssize_t count = descriptor.isOpen() ? read(descriptor.get(), bytes.data(), bytes.size()) : -1;
    if (count < 0) {
        if (isAbsence(errno)) return std::nullopt;
        throw posixError(file.string() + " could not be read", errno);
    }
    const std::string text(bytes.data(), static_cast<size_t>(count));
    return text.substr(0, text.find('\n'));
}

std::vector<std::string> namesIn(const std::filesystem::path& folder) {
    std::vector<std::string> names;
    std::error_code failure;
    std::filesystem::directory_iterator entry(folder, failure);
    for (; !failure && entry != std::filesystem::directory_iterator(); entry.increment(failure))
        names.push_back(entry->path().filename().string());
    if (failure && !isAbsence(failure.value()))
        throw posixError(folder.string() + " could not be read", failure.value());
    return names;
}

std::vector<std::string> filesMatching(const std::string& pattern) {
    glob_t found{};
    const int result = glob(pattern.c_str(), 0, refuseUnlessAbsent, &found);
    std::vector<std::string> files;
    if (result == 0) files.assign(found.gl_pathv, found.gl_pathv + found.gl_pathc);
    globfree(&found);
    if (result != 0 && result != GLOB_NOMATCH) throw posixError(pattern + " could not be searched", errno);
    return files;
}

}  // namespace tessel
