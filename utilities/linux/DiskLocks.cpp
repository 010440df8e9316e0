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

PlatformError lockedElsewhere(const std::string& identifier) {
    return {"Disk", EBUSY,
            "Resource busy: a virtual machine or container works on a disk, and it can't be told whether "
            "that is " +
                identifier + "."};
}

}  // namespace

DiskSnapshot readUnlocked(BlockSystem& system, const std::string& identifier) {
    const auto end = system.now() + timeToUnlock;
    for (;;) {
        DiskSnapshot snapshot = system.read(identifier);
        const auto parts = partsOf(snapshot, listedDisk(snapshot, identifier));
        const bool isLocked = std::ranges::any_of(parts, &KernelDevice::isLocked);
        if (!isLocked && !snapshot.isDiskLockedElsewhere) return snapshot;
        if (system.now() >= end) throw isLocked ? locked(identifier) : lockedElsewhere(identifier);
        system.wait(pauseBetweenReadings);
    }
}

}  // namespace tessel
