#include "utilities/linux/LinuxDisks.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <optional>

#include "foundation/Errors.h"
#include "utilities/linux/DiskDescriptions.h"
#include "utilities/linux/DiskLocks.h"
#include "utilities/linux/DiskProtection.h"

namespace tessel {

namespace {

using Ejection = BlockSystem::Ejection;

using std::chrono::milliseconds;
using std::chrono::seconds;

/// The program gives an eject 60 seconds. The last reading of the machine may itself take 15 of them.
constexpr seconds timeToEject{40};

/// UDisks2 may have to ask before it unmounts. Whoever runs the utility knows how long that may take.
constexpr std::chrono::hours timeToAnswer{24};

/// A volume may be mounted several times, and a desktop may mount it again in the meantime.
constexpr seconds timeToUnmount{5};

/// UDisks2 marks a mount as its own after the kernel has made it, which takes seconds on a slow computer.
constexpr seconds timeToMark{5};

/// A desktop mounts new partitions about a second after the program that wrote them has closed the disk. On a
/// slow computer it takes correspondingly longer, as does reading the machine.
constexpr milliseconds timeToMountAgain{1500};
constexpr int readingsToMountAgain = 3;

/// The device manager activates volume groups and the like later still, in programs of their own.
constexpr milliseconds timeToActivate{3500};

constexpr milliseconds pauseBetweenReadings{200};

/// The drive may be busy for a moment, because udev looks at the new contents. What keeps it busy for longer,
/// with nothing mounted, is a claim that the kernel does not show, and waiting ends none of those.
constexpr int mostBusyAnswers = 10;

PlatformError busy(const std::string& identifier) {
    return {"Disk", EBUSY, "Resource busy: a volume on " + identifier + " keeps being remounted."};
}

PlatformError claimed(const std::string& identifier) {
    return {"Disk", EBUSY, "Resource busy: another program or file system uses " + identifier + "."};
}

/// UDisks2 ejects drives. Where two disks have one drive, it might eject the other disk.
bool hasEjectMechanism(const Machine& machine, const BlockDevice& disk) {
    return disk.udisks.isEjectable && !isInCardSlot(disk) && !sharesDrive(machine, disk);
}

bool isUnused(const Machine& machine, const BlockDevice& disk) {
    return mountedParts(machine, disk).empty() && !protectionOf(machine, disk);
}

/// Returns whether the contents are of a kind that computers activate without being asked, and desktops
/// unlock if they remember the password.
bool mayBeActivated(const Machine& machine, const BlockDevice& disk) {
    return std::ranges::any_of(partsOf(machine, disk), [](const BlockDevice* part) {
        const std::string& kind = part->udisks.fileSystem;
        const bool isEncrypted = kind == "crypto_LUKS" || kind == "BitLocker";
        return isEncrypted || kind.ends_with("_member") || kind == "bcache";
    });
}

}  // namespace

PropertyList::Dictionary LinuxDisks::list() {
    return diskListOf(system.read());
}

PropertyList::Dictionary LinuxDisks::info(const std::string& identifier) {
    const Machine machine = system.read(identifier);
    return diskDetailsOf(machine, listedDisk(machine, identifier));
}

void LinuxDisks::unmount(const std::string& identifier) {
    unmountBefore(system.now() + timeToAnswer, identifier);
}

void LinuxDisks::eject(const std::string& identifier) {
    try {
        ejectBefore(system.now() + timeToEject, identifier);
    } catch (const PlatformError& error) {
        // Whatever the reason, the person must learn that the image itself has been written.
        throw PlatformError(
            error.domain(), error.code(),
            "The image was written, but the SD card could not be ejected. " + error.localizedDescription());
    }
}

void LinuxDisks::unmountBefore(Time deadline, const std::string& identifier) {
    const Time endOfMarking = system.now() + timeToMark;
    std::optional<Time> end;  // however late unmounting begins, it has its time
    for (;;) {
        const Machine machine = readUnlocked(system, identifier);
        const BlockDevice& disk = listedDisk(machine, identifier);
        if (const auto protection = protectionOf(machine, disk)) {
            if (!protection->mayEnd || system.now() >= endOfMarking)
                throw protectedDisk(machine, disk, *protection);
            system.wait(pauseBetweenReadings);
            continue;
        }
        const auto mounted = mountedParts(machine, disk);
        if (mounted.empty()) return;
        if (!end) {
            end = std::min(deadline, system.now() + timeToUnmount);
        } else if (system.now() >= *end) {
            throw busy(identifier);
        }
        try {
            for (const BlockDevice* part : mounted)
                system.unmount(part->name, deadline);
        } catch (const PlatformError&) {
            // It is no failure if somebody else was faster.
            if (!isAtRest(identifier)) throw;
        }
    }
}

void LinuxDisks::ejectBefore(Time deadline, const std::string& identifier) {
    bool isEjected = false;
    int busyAnswers = 0;
    do {
        awaitRelease(identifier, deadline);
        if (isEjected && !isPresent(identifier)) return;
        unmountBefore(deadline, identifier);
        system.flush(deadline);
        const Machine machine = read(identifier);
        const BlockDevice& disk = listedDisk(machine, identifier);
        if (!isUnused(machine, disk)) continue;
        const auto ejection =
            hasEjectMechanism(machine, disk) ? system.eject(disk.name, deadline) : Ejection::impossible;
        isEjected = ejection == Ejection::done;
        if (ejection == Ejection::busy) {
            if (++busyAnswers == mostBusyAnswers) throw claimed(identifier);
            system.wait(pauseBetweenReadings);
            continue;
        }
        awaitSettling(identifier, deadline);
        if (isAtRest(identifier)) return;
    } while (system.now() < deadline);
    requireUnprotected(latest, listedDisk(latest, identifier));
    throw busy(identifier);
}

/// Waits until those who use the disk have let go of it. What stays in use then protects it.
void LinuxDisks::awaitRelease(const std::string& identifier, Time deadline) {
    for (; system.now() < deadline; system.wait(pauseBetweenReadings)) {
        const Machine machine = read(identifier);
        const BlockDevice* disk = findListedDisk(machine, identifier);
        const auto protection = disk ? protectionOf(machine, *disk) : std::nullopt;
        if (!protection || !protection->mayEnd) return;
    }
}

/// Waits until the device manager and the desktop have made of the new contents what they will, since the
/// medium may stay in its slot.
void LinuxDisks::awaitSettling(const std::string& identifier, Time deadline) {
    if (!isPresent(identifier)) return;
    const Time begin = system.now();
    const auto timeToMount = std::max<Duration>(timeToMountAgain, readingsToMountAgain * longestReading);
    // However late it is, the desktop has its usual time.
    const auto wait = std::max<Duration>(timeToMountAgain, std::min(timeToMount, deadline - begin));
    const Time end = std::min(deadline, begin + wait + timeToActivate);
    system.wait(std::chrono::ceil<milliseconds>(wait));
    for (; system.now() < end; system.wait(pauseBetweenReadings)) {
        const Machine machine = read(identifier);
        const BlockDevice* disk = findListedDisk(machine, identifier);
        if (!disk || protectionOf(machine, *disk)) return;
        if (!machine.isSettling && !mayBeActivated(machine, *disk)) return;
    }
}

const Machine& LinuxDisks::read(const std::string& identifier) {
    const Time begin = system.now();
    latest = system.read(identifier);
    longestReading = std::max(longestReading, system.now() - begin);
    return latest;
}

bool LinuxDisks::isPresent(const std::string& identifier) {
    const Machine machine = read(identifier);
    return findListedDisk(machine, identifier);
}

/// Returns whether the medium is gone, or nobody uses any part of it.
bool LinuxDisks::isAtRest(const std::string& identifier) {
    const Machine machine = read(identifier);
    const BlockDevice* disk = findListedDisk(machine, identifier);
    return !disk || isUnused(machine, *disk);
}

}  // namespace tessel
