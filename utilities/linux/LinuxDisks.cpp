#include "utilities/linux/LinuxDisks.h"

#include <algorithm>
#include <cerrno>
#include <chrono>

#include "foundation/Errors.h"
#include "utilities/linux/DiskDescriptions.h"
#include "utilities/linux/DiskProtection.h"

namespace tessel {

namespace {

using Ejection = BlockSystem::Ejection;

/// A volume may be mounted several times, and a desktop may mount it again in the meantime.
constexpr int unmountRounds = 5;
constexpr int ejectAttempts = 3;

/// A desktop mounts new partitions about a second after the program that wrote them has closed the disk.
constexpr std::chrono::milliseconds timeToMountAgain{1500};

/// The device manager locks a disk while it looks at what has just been written to it.
constexpr int lockAttempts = 20;
constexpr std::chrono::milliseconds pauseWhileLocked{100};

PlatformError busy(const std::string& identifier) {
    return {"Disk", EBUSY, "Resource busy: a volume on " + identifier + " keeps being remounted."};
}

PlatformError locked(const std::string& identifier) {
    return {"Disk", EBUSY, "Resource busy: another program is working on " + identifier + "."};
}

bool hasEjectMechanism(const BlockDevice& disk) {
    return disk.udisks.isEjectable && !isInCardSlot(disk);
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
        const Machine machine = readUnlocked(identifier);
        const BlockDevice& disk = listedDisk(machine, identifier);
        requireUnprotected(machine, disk);
        const auto mounted = mountedParts(machine, disk);
        if (mounted.empty()) return;
        try {
            for (const BlockDevice* part : mounted)
                system.unmount(part->name);
        } catch (const PlatformError&) {
            // It is no failure if somebody else was faster.
            if (!isAtRest(identifier)) throw;
        }
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
        if (!isPresent(identifier)) return;
        // A desktop may mount again what stays in its slot.
        system.wait(timeToMountAgain);
        if (isAtRest(identifier)) return;
    }
    throw busy(identifier);
}

/// Reads the machine as soon as nobody else is working on the disk, such as another copy of this program or a
/// partitioning tool.
Machine LinuxDisks::readUnlocked(const std::string& identifier) {
    for (int attempt = 1;; ++attempt) {
        Machine machine = system.read();
        if (std::ranges::none_of(partsOf(machine, listedDisk(machine, identifier)), &BlockDevice::isLocked))
            return machine;
        if (attempt == lockAttempts) throw locked(identifier);
        system.wait(pauseWhileLocked);
    }
}

bool LinuxDisks::isPresent(const std::string& identifier) {
    const Machine machine = system.read();
    return findListedDisk(machine, identifier);
}

/// Returns whether the medium is gone or nothing on it is mounted.
bool LinuxDisks::isAtRest(const std::string& identifier) {
    const Machine machine = system.read();
    const BlockDevice* disk = findListedDisk(machine, identifier);
    return !disk || mountedParts(machine, *disk).empty();
}

}  // namespace tessel
