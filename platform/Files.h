#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>

#include "platform/FileDescriptor.h"
#include "platform/SystemResult.h"

namespace tessel {

struct FileStatus {
    bool isRegularFile = false;
    uint64_t sizeBytes = 0;
};

/// Returns the status of the path itself: a link is not followed, and is not a regular file. Throws
/// PlatformError.
[[nodiscard]] FileStatus fileStatus(const std::filesystem::path& path);

/// Returns the status of an open file. Throws PlatformError.
[[nodiscard]] FileStatus fileStatus(const FileDescriptor& descriptor);

/// Returns the path with its links resolved, or unchanged where they lead nowhere.
[[nodiscard]] std::filesystem::path withLinksResolved(const std::filesystem::path& path);

/// Returns whether the path leads to a regular file that this program may execute.
[[nodiscard]] bool isExecutableFile(const std::filesystem::path& path);

/// Advises the system before the first read that the file will be read once, from its beginning to its end. A
/// system that can't take advice ignores it, here and below.
void adviseReadingOnce(int descriptor);

/// Advises the system that this part is not needed again and may be dropped from its cache.
void adviseFinished(int descriptor, uint64_t offset, uint64_t length);

/// A file that is read at offsets. Its operations block, and may be called on any thread.
class ReadOnlyFile {
  public:
    /// Opens the path, unless its last component is a link. On failure the file stays closed.
    SystemResult open(const std::filesystem::path& path);

    SystemResult size() const;

    /// Fills the span. Throws TransferError, with code 0 where the file ends too early.
    void read(std::span<std::byte> bytes, uint64_t offset) const;

    /// Advises the system that this part is not needed again and may be dropped from its cache.
    void adviseFinished(uint64_t offset, uint64_t length) const;

  private:
    FileDescriptor descriptor;
};

}  // namespace tessel
