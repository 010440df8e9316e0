#pragma once

#include <string>

#include "utilities/DiskUtility.h"
#include "utilities/linux/BlockSystem.h"

namespace tessel {

/// The disks of this computer. Each operation reads the machine anew and judges anew: a protected disk is
/// neither unmounted nor ejected, nor is one that somebody else is writing to.
class LinuxDisks : public DiskSource {
  public:
    explicit LinuxDisks(BlockSystem& system) : system(system) {}

    PropertyList::Dictionary list() override;
    PropertyList::Dictionary info(const std::string& identifier) override;

    /// Returns once nothing on the disk is mounted any more.
    void unmount(const std::string& identifier) override;

    /// Returns once the medium may be pulled: nobody uses any part of it, everything has been written, and it
    /// has been ejected if the reader has a mechanism for that. What has been activated since the image was
    /// written is waited for, but never ended. Power is never cut, because other slots may depend on it.
    void eject(const std::string& identifier) override;

  private:
    using Time = BlockSystem::Time;
    using Duration = Time::duration;

    void unmountBefore(Time deadline, const std::string& identifier);
    void ejectBefore(Time deadline, const std::string& identifier);
    void awaitRelease(const std::string& identifier, Time deadline);
    void awaitSettling(const std::string& identifier, Time deadline);
    const Machine& read(const std::string& identifier);
    bool isPresent(const std::string& identifier);
    bool isAtRest(const std::string& identifier);

    BlockSystem& system;
    Machine latest;             ///< as it was last read
    Duration longestReading{};  ///< tells how slow this computer is
};

}  // namespace tessel
