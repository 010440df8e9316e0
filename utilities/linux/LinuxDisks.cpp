#include "utilities/linux/LinuxDisks.h"

#include <algorithm>
#include <cerrno>
#include <chrono>

#include "platform/Errors.h"
#include "utilities/linux/DiskDescriptions.h"
#include "utilities/linux/DiskProtection.h"

namespace tessel {

namespace {

/// A volume may be mounted several times, and mounted again by a desktop meanwhile.
constexpr int unmountRounds = 5;
constexpr int ejectAttempts = 3;

/// A desktop mounts new partitions about a second after the descriptor that wrote them was closed.
constexpr std::chrono::milliseconds timeToMountAgain{1500};

PlatformError busy(const std::string& identifier) {
    return {"Disk", EBUSY, "Resource busy: a volume on " + identifier + " is mounted again and again."};
}

bool hasEjectMechanism(const BlockDevice& disk) {
    return disk.service.isEjectable && !isInCardSlot(disk);
}

}  // namespace

PropertyList::Dictionary LinuxDisks::list() {
    return diskListOf(system.read());
}

PropertyList::Dictionary LinuxDisks::info(const std::string& identifier) {
    const Machine machine = system.read();
    return diskDetailsOf(machine, listedDisk(machine, identifier));
}

void LinuxDisks::unmount(const std::string& identifier) {
    for (int round = 0; round <= unmountRounds; ++round) {
        const Machine machine = system.read();
        const BlockDevice& disk = listedDisk(machine, identifier);
        requireUnprotected(machine, disk);
        const auto mounted = mountedParts(machine, disk);
        if (mounted.empty()) return;
        for (const BlockDevice* part : mounted)
            system.unmount(part->name);
    }
    throw busy(identifier);
}

void LinuxDisks::eject(const std::string& identifier) {
    for (int attempt = 1; attempt <= ejectAttempts; ++attempt) {
        unmount(identifier);
        system.flush();
        const Machine machine = system.read();
        const BlockDevice& disk = listedDisk(machine, identifier);
        if (!hasEjectMechanism(disk)) {
            system.wait(timeToMountAgain);
        } else if (system.eject(disk.name) == BlockSystem::Ejection::busy) {
            continue;
        }
        if (isAtRest(identifier)) return;
    }
    throw busy(identifier);
}

/// Whether the medium is gone, or nothing of it is mounted.
bool LinuxDisks::isAtRest(const std::string& identifier) {
    const Machine machine = system.read();
    return std::ranges::none_of(listedDisks(machine), [&](const BlockDevice* disk) {
        return identifierOf(machine, *disk) == identifier && !mountedParts(machine, *disk).empty();
    });
}

}  // namespace tessel
