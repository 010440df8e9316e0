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

/// What stands at the path itself: a link is not followed, and so is not a regular file. Throws
/// PlatformError.
[[nodiscard]] FileStatus fileStatus(const std::filesystem::path& path);

/// What is open. Throws PlatformError.
[[nodiscard]] FileStatus fileStatus(const FileDescriptor& descriptor);

/// Whether there is a file that this program may start.
[[nodiscard]] bool isExecutableFile(const std::filesystem::path& path);

/// A file that is read at offsets. Blocking; reads may run on any thread.
class ReadOnlyFile {
  public:
    /// Opens the path; a link at its end is refused. On failure the file stays closed.
    SystemResult open(const std::filesystem::path& path);

    SystemResult size() const;

    /// One system call: may be short or interrupted. A value of 0 means the end of the file.
    SystemResult read(std::span<std::byte> bytes, uint64_t offset) const;

    /// Tells the system that this part is not needed again, so that it may forget it.
    void adviseFinished(uint64_t offset, uint64_t length) const;

  private:
    FileDescriptor descriptor;
};

}  // namespace tessel
