#include "utilities/linux/LinuxDisks.h"

#include <algorithm>
#include <cerrno>
#include <chrono>

#include "platform/Errors.h"
#include "utilities/linux/DiskDescriptions.h"
#include "utilities/linux/DiskProtection.h"

namespace tessel {

namespace {

using Ejection = BlockSystem::Ejection;

/// A volume may be mounted several times, and mounted again by a desktop meanwhile.
constexpr int unmountRounds = 5;
constexpr int ejectAttempts = 3;

/// A desktop mounts new partitions about a second after the descriptor that wrote them was closed.
constexpr std::chrono::milliseconds timeToMountAgain{1500};

PlatformError busy(const std::string& identifier) {
    return {"Disk", EBUSY, "Resource busy: a volume on " + identifier + " is mounted again and again."};
}

/// Somebody else may be writing to it: another copy of this program, or a partitioning tool.
void requireUnlocked(const Machine& machine, const BlockDevice& disk) {
    if (std::ranges::any_of(partsOf(machine, disk), &BlockDevice::isLocked))
        throw PlatformError(
            "Disk", EBUSY,
            "Resource busy: another program is working on " + identifierOf(machine, disk) + ".");
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
        requireUnlocked(machine, disk);
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
        const auto ejection = hasEjectMechanism(disk) ? system.eject(disk.name) : Ejection::impossible;
        if (ejection == Ejection::busy) continue;
        // What stays in its slot may be mounted again.
        if (ejection == Ejection::impossible) system.wait(timeToMountAgain);
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
