#include "platform/Files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "foundation/Errors.h"
#include "foundation/Text.h"
#include "platform/Transfer.h"

namespace tessel {

namespace {

FileStatus statusFrom(const struct stat& status) {
    return {S_ISREG(status.st_mode), static_cast<uint64_t>(status.st_size)};
}

}  // namespace

FileStatus fileStatus(const std::filesystem::path& path) {
    struct stat status{};
    if (lstat(path.c_str(), &status) != 0) {
        throw posixError("The file “" + printable(path.string()) + "” could not be inspected", errno);
    }
    return statusFrom(status);
}

FileStatus fileStatus(const FileDescriptor& descriptor) {
    struct stat status{};
    if (fstat(descriptor.get(), &status) != 0) throw posixError("An open file could not be inspected", errno);
    return statusFrom(status);
}

std::filesystem::path withLinksResolved(const std::filesystem::path& path) {
    std::error_code unresolvable;
    const auto resolved = std::filesystem::canonical(path, unresolvable);
    return unresolvable ? path : resolved;
}

bool isExecutableFile(const std::filesystem::path& path) {
    // access(2) alone also accepts a folder that may be entered.
    std::error_code unknown;
    return std::filesystem::is_regular_file(path, unknown) && access(path.c_str(), X_OK) == 0;
}

SystemResult ReadOnlyFile::open(const std::filesystem::path& path) {
    // Without O_NONBLOCK a pipe in the file's place would hang this call; regular files ignore the flag.
    const auto result =
        SystemResult::from(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    if (!result.isSuccess()) return result;
    descriptor = FileDescriptor(static_cast<int>(result.value));
    adviseReadingOnce(descriptor.get());
    return result;
}

SystemResult ReadOnlyFile::size() const {
    struct stat status{};
    if (fstat(descriptor.get(), &status) != 0) return {.error = errno};
    return SystemResult::from(status.st_size);
}

void ReadOnlyFile::read(std::span<std::byte> bytes, uint64_t offset) const {
    transferFully(bytes, offset, [this](std::span<std::byte> rest, uint64_t at) {
        return SystemResult::from(pread(descriptor.get(), rest.data(), rest.size(), static_cast<off_t>(at)));
    });
}

void ReadOnlyFile::adviseFinished(uint64_t offset, uint64_t length) const {
    tessel::adviseFinished(descriptor.get(), offset, length);
}

}  // namespace tessel
