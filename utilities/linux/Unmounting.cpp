#include "utilities/linux/Unmounting.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <optional>

#include "utilities/linux/DiskLocks.h"
#include "utilities/linux/DiskProtection.h"

namespace tessel {

namespace {

using Time = BlockSystem::Time;
using std::chrono::seconds;

/// A volume may be mounted several times, and a desktop may mount it again in the meantime.
constexpr seconds timeToUnmount{5};

/// UDisks2 marks a mount as its own after the kernel has made it, which takes seconds on a slow computer.
constexpr seconds timeToMark{5};

constexpr std::chrono::milliseconds pauseBetweenReadings{200};

/// Returns whether the medium is gone, or no part of it is in use.
bool isAtRest(BlockSystem& system, const std::string& identifier) {
    const DiskSnapshot snapshot = system.read(identifier);
    const KernelDevice* disk = findListedDisk(snapshot, identifier);
    return !disk || isUnused(snapshot, *disk);
}

}  // namespace

void unmountDisk(BlockSystem& system, const std::string& identifier, Time deadline) {
    const Time endOfMarking = system.now() + timeToMark;
    std::optional<Time> end;  // set when unmounting begins, so that a late beginning does not shorten it
    for (;;) {
        const DiskSnapshot snapshot = readUnlocked(system, identifier);
        const KernelDevice& disk = listedDisk(snapshot, identifier);
        if (const auto protection = protectionOf(snapshot, disk)) {
            if (!protection->mayEnd || system.now() >= endOfMarking)
                throw protectedDisk(snapshot, disk, *protection);
            system.wait(pauseBetweenReadings);
            continue;
        }
        const auto mounted = mountedParts(snapshot, disk);
        if (mounted.empty()) return;
        if (!end) {
            end = std::min(deadline, system.now() + timeToUnmount);
        } else if (system.now() >= *end) {
            throw remounted(identifier);
        }
        try {
            for (const KernelDevice* part : mounted)
                system.unmount(part->name, deadline);
        } catch (const PlatformError&) {
            // It is no failure if another program was faster.
            if (!isAtRest(system, identifier)) throw;
        }
    }
}

PlatformError remounted(const std::string& identifier) {
    return {EBUSY, "Resource busy: a volume on " + identifier + " keeps being remounted."};
}

}  // namespace tessel
