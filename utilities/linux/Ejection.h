#pragma once

#include <string>

#include "utilities/linux/BlockSystem.h"

namespace tessel {

/// Releases one disk, so that its medium may be pulled out. Anything activated since the image was written is
/// waited for, but never ended. Power is never cut, because other slots may depend on it.
class Ejection {
  public:
    Ejection(BlockSystem& system, std::string identifier);

    /// Ejects the disk. Returns once the medium may be pulled out: no part of it is in use, everything has
    /// been written, and it has been ejected if the reader has a mechanism for that. Throws PlatformError.
    void run();

  private:
    using Time = BlockSystem::Time;
    using Duration = Time::duration;

    enum class State {
        inUse,      ///< perhaps; programs and file systems have yet to let go of it
        mounted,    ///< perhaps; by the desktop, which has read the new partitions
        unflushed,  ///< with nothing mounted
        inserted,   ///< with everything written
        settling,   ///< ejected, or without a mechanism; udev and the desktop may yet do something with it
        released,   ///< may be pulled
    };

    State next(State state);
    State awaitRelease();
    State unmount();
    State flush();
    State eject();
    State settle();
    State startOver();

    void awaitSettling();
    const DiskSnapshot& read();
    [[nodiscard]] const KernelDevice* diskInPlace(const DiskSnapshot& snapshot) const;

    BlockSystem& system;
    const std::string identifier;
    const Time deadline;
    std::string place;          ///< the path of the disk in the kernel's device tree
    DiskSnapshot latest;        ///< the last reading
    Duration longestReading{};  ///< a measure of how slow this computer is
    bool hasBeenEjected = false;
    int busyAnswers = 0;
};

}  // namespace tessel
