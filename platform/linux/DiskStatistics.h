#pragma once

#include <filesystem>

#include "platform/FileDescriptor.h"
#include "platform/SystemResult.h"

namespace tessel {

/// The kernel's statistics of a disk, which count the transfers of every program. Every user may read them.
class DiskStatistics {
  public:
    /// Opens the statistics in the disk's folder in sysfs, such as "/sys/block/sdb".
    explicit DiskStatistics(const std::filesystem::path& folder);

    /// Returns how many bytes have been written to the disk and its partitions. Fails where the kernel does
    /// not count, or the disk is gone.
    SystemResult bytesWritten() const;

  private:
    FileDescriptor counts;
    FileDescriptor isCounting;
};

}  // namespace tessel
