#pragma once

#include "utilities/AuthorizationUtility.h"
#include "utilities/linux/BlockSystem.h"

namespace tessel {

/// Opens disks of this computer, once the person agreed in the desktop's own dialog. A protected or mounted
/// disk is never opened. What is handed on is proved to be the disk that was asked for, is open to nobody
/// else, and carries an exclusive lock, by which the system's own programs know to leave it alone.
class LinuxAuthorization : public DescriptorSource {
  public:
    explicit LinuxAuthorization(BlockSystem& system) : system(system) {}

    FileDescriptor open(const std::string& identifier) override;

  private:
    BlockDevice readUnusedDisk(const std::string& identifier);

    BlockSystem& system;
};

}  // namespace tessel
