#pragma once

#include "utilities/AuthorizationUtility.h"
#include "utilities/linux/BlockSystem.h"
#include "utilities/linux/DiskLocks.h"

namespace tessel {

/// Opens disks of this computer once the person has agreed in the desktop's own dialog. A protected, mounted,
/// locked or write-protected disk is never opened. The descriptor that is handed on has been proved to be the
/// disk that was asked for; nobody else has that disk open, and an exclusive lock tells the system's own
/// programs to leave it alone.
class LinuxAuthorization : public DescriptorSource {
  public:
    explicit LinuxAuthorization(BlockSystem& system) : system(system) {}

    FileDescriptor open(const std::string& identifier) override;

  private:
    BlockDevice readUnusedDisk(const std::string& identifier, OwnLock ownLock);

    BlockSystem& system;
};

}  // namespace tessel
