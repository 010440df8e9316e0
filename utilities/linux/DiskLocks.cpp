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
    return {EBUSY, "Resource busy: another program is working on " + identifier + "."};
}

PlatformError lockedElsewhere(const std::string& identifier) {
    return {EBUSY,
            "Resource busy: a virtual machine or container works on a disk, and it can't be told whether "
            "that is " +
                identifier + "."};
}

bool isAnyPartLocked(const DiskSnapshot& snapshot, const KernelDevice& disk) {
    return std::ranges::any_of(partsOf(snapshot, disk), &KernelDevice::isLocked);
}

}  // namespace

bool isLocked(const DiskSnapshot& snapshot, const KernelDevice& disk) {
    return snapshot.isDiskLockedElsewhere || isAnyPartLocked(snapshot, disk);
}

DiskSnapshot readUnlocked(BlockSystem& system, const std::string& identifier) {
    const auto end = system.now() + timeToUnlock;
    for (;;) {
        DiskSnapshot snapshot = system.read(identifier);
        const KernelDevice& disk = listedDisk(snapshot, identifier);
        if (!isLocked(snapshot, disk)) return snapshot;
        if (system.now() >= end)
            throw isAnyPartLocked(snapshot, disk) ? locked(identifier) : lockedElsewhere(identifier);
        system.wait(pauseBetweenReadings);
    }
}

}  // namespace tessel
