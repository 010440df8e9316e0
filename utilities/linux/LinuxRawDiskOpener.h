#pragma once

#include "utilities/AuthorizationUtility.h"
#include "utilities/linux/BlockSystem.h"

namespace tessel {

/// Opens disks of this computer once the user has agreed in the desktop's own dialog. A protected, mounted,
/// locked or write-protected disk is never opened, nor one that changed while the user was asked. The
/// descriptor that is handed on has been proved to be the disk that was asked for; no other program has
/// claimed that disk, and an exclusive lock tells the system's own programs to leave it alone.
class LinuxRawDiskOpener : public DiskOpener {
  public:
    explicit LinuxRawDiskOpener(BlockSystem& system) : system(system) {}

    FileDescriptor open(const std::string& identifier) override;

  private:
    KernelDevice readUnusedDisk(const std::string& identifier);

    BlockSystem& system;
};

}  // namespace tessel
