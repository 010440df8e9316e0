#pragma once

#include <string>

#include "utilities/DiskUtility.h"
#include "utilities/linux/BlockSystem.h"

namespace tessel {

/// The disks of this computer. Each operation reads the machine again and judges again: a protected disk is
/// neither unmounted nor ejected, nor is one that somebody else is writing to.
class LinuxDisks : public DiskSource {
  public:
    explicit LinuxDisks(BlockSystem& system) : system(system) {}

    PropertyList::Dictionary list() override;
    PropertyList::Dictionary info(const std::string& identifier) override;

    /// Afterwards nothing of the disk is mounted, and nothing holds it.
    void unmount(const std::string& identifier) override;

    /// Afterwards the medium may be pulled: nothing of it is mounted, everything is written, and it is
    /// ejected where there is a mechanism for that. Power is never cut, since other slots may depend on it.
    void eject(const std::string& identifier) override;

  private:
    Machine readUnlocked(const std::string& identifier);
    bool isPresent(const std::string& identifier);
    bool isAtRest(const std::string& identifier);

    BlockSystem& system;
};

}  // namespace tessel
