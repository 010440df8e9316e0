#include "utilities/linux/DiskLocks.h"

#include <algorithm>
#include <cerrno>
#include <chrono>

#include "foundation/Errors.h"

namespace tessel {

namespace {

/// Other programs lock a disk for a moment while they look at what has just been written to it.
constexpr std::chrono::seconds timeToUnlock{2};
constexpr std::chrono::milliseconds pauseBetweenReadings{100};

PlatformError locked(const std::string& identifier) {
    return {"Disk", EBUSY, "Resource busy: another program is working on " + identifier + "."};
}

}  // namespace

Machine readUnlocked(BlockSystem& system, const std::string& identifier, OwnLock ownLock) {
    const auto end = system.now() + timeToUnlock;
    for (;;) {
        Machine machine = system.read();
        const BlockDevice& disk = listedDisk(machine, identifier);
        const bool isLocked = std::ranges::any_of(partsOf(machine, disk), [&](const BlockDevice* part) {
            return part->isLocked && (part != &disk || ownLock == OwnLock::none);
        });
        if (!isLocked) return machine;
        if (system.now() >= end) throw locked(identifier);
        system.wait(pauseBetweenReadings);
    }
}

}  // namespace tessel
