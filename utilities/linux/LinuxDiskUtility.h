#pragma once

#include <string>

#include "utilities/DiskUtility.h"
#include "utilities/linux/BlockSystem.h"

namespace tessel {

/// The disks of this computer. Each operation reads and checks them anew: a protected disk is neither
/// unmounted nor ejected, nor is one that another program is writing to.
class LinuxDiskUtility : public DiskUtility {
  public:
    explicit LinuxDiskUtility(BlockSystem& blockSystem) : system(blockSystem) {}

    PropertyList::Dictionary list() override;
    PropertyList::Dictionary info(const std::string& identifier) override;
    void unmount(const std::string& identifier) override;
    void eject(const std::string& identifier) override;

  private:
    BlockSystem& system;
};

}  // namespace tessel
