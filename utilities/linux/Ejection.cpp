#include "utilities/linux/Ejection.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <utility>

#include "foundation/Errors.h"
#include "utilities/linux/DiskLocks.h"
#include "utilities/linux/DiskProtection.h"
#include "utilities/linux/Unmounting.h"

namespace tessel {

namespace {

using EjectOutcome = BlockSystem::EjectOutcome;
using std::chrono::milliseconds;
using std::chrono::seconds;

/// The program allows an eject 60 seconds. The last reading of the computer may itself take 15 of them.
constexpr seconds timeToEject{40};

/// A desktop mounts new partitions about a second after the program that wrote them has closed the disk. On a
/// slow computer it takes correspondingly longer, as does reading it.
constexpr milliseconds timeToMountAgain{1500};
constexpr int readingsToMountAgain = 6;

/// udev activates volume groups and the like later still, in programs of their own.
constexpr milliseconds timeToActivate{3500};

constexpr milliseconds pauseBetweenReadings{200};

/// The drive may be busy for a moment, because udev reads the new contents. A drive that stays busy with
/// nothing mounted has a claim that the kernel does not show, and waiting never ends such a claim.
constexpr int mostBusyAnswers = 10;

PlatformError claimed(const std::string& identifier) {
    return {EBUSY, "Resource busy: another program or file system uses " + identifier + "."};
}

/// Returns whether UDisks2 can eject the disk. It ejects drives: if two disks have one drive, it might eject
/// the other disk.
bool hasEjectMechanism(const DiskSnapshot& snapshot, const KernelDevice& disk) {
    return disk.udisks.isEjectable && !isInCardSlot(disk) && !sharesDrive(snapshot, disk);
}

/// Returns whether no part of the disk is in use, and no program has locked it.
bool isAtRest(const DiskSnapshot& snapshot, const KernelDevice& disk) {
    return isUnused(snapshot, disk) && !isLocked(snapshot, disk);
}

/// Returns whether the contents are of a kind that computers activate automatically, and desktops unlock if
/// they remember the password.
bool mayBeActivated(const DiskSnapshot& snapshot, const KernelDevice& disk) {
    return std::ranges::any_of(partsOf(snapshot, disk), [](const KernelDevice* part) {
        const std::string& kind = part->udisks.fileSystem;
        const bool isEncrypted = kind == "crypto_LUKS" || kind == "BitLocker";
        return isEncrypted || kind.ends_with("_member") || kind == "bcache";
    });
}

}  // namespace

Ejection::Ejection(BlockSystem& blockSystem, std::string disk) :
    system(blockSystem),
    identifier(std::move(disk)),
    deadline(system.now() + timeToEject) {}

void Ejection::run() {
    for (State state = State::inUse; state != State::released;)
        state = next(state);
}

Ejection::State Ejection::next(State state) {
    switch (state) {
        case State::inUse:
            return awaitRelease();
        case State::mounted:
            return unmount();
        case State::unflushed:
            return flush();
        case State::inserted:
            return eject();
        case State::settling:
            return settle();
        case State::released:
            break;
    }
    return State::released;
}

/// Waits until the disk is released by its users. A use that does not end protects the disk.
Ejection::State Ejection::awaitRelease() {
    for (; system.now() < deadline; system.wait(pauseBetweenReadings)) {
        const DiskSnapshot& snapshot = read();
        const KernelDevice* disk = findListedDisk(snapshot, identifier);
        if (disk) place = disk->path;
        const auto protection = disk ? protectionOf(snapshot, *disk) : std::nullopt;
        if (!protection || !protection->mayEnd) break;
    }
    return hasBeenEjected && !findListedDisk(read(), identifier) ? State::settling : State::mounted;
}

Ejection::State Ejection::unmount() {
    unmountDisk(system, identifier, deadline);
    return State::unflushed;
}

Ejection::State Ejection::flush() {
    system.flush(deadline);
    return State::inserted;
}

Ejection::State Ejection::eject() {
    const DiskSnapshot& snapshot = read();
    const KernelDevice& disk = listedDisk(snapshot, identifier);
    if (!isAtRest(snapshot, disk)) return startOver();
    if (!hasEjectMechanism(snapshot, disk)) return State::settling;
    switch (system.eject(disk.name, deadline)) {
        case EjectOutcome::busy:
            if (++busyAnswers == mostBusyAnswers) throw claimed(identifier);
            system.wait(pauseBetweenReadings);
            return startOver();
        case EjectOutcome::ejected:
            hasBeenEjected = true;
            return State::settling;
        case EjectOutcome::impossible:
            break;
    }
    hasBeenEjected = false;
    return State::settling;
}

Ejection::State Ejection::settle() {
    awaitSettling();
    const DiskSnapshot& snapshot = read();
    const KernelDevice* disk = diskInPlace(snapshot);
    if (!disk || isAtRest(snapshot, *disk)) return State::released;
    if (identifierOf(snapshot, *disk) == identifier) return startOver();
    // The reader has announced its medium anew, or the user has inserted another one, which must not be
    // touched.
    if (system.now() >= deadline) throw remounted(identifier);
    system.wait(pauseBetweenReadings);
    return State::settling;
}

/// Goes back to the first step. Throws the reason why the disk is still in use when there is no time left.
Ejection::State Ejection::startOver() {
    if (system.now() < deadline) return State::inUse;
    const KernelDevice& disk = listedDisk(latest, identifier);
    requireUnprotected(latest, disk);
    throw isLocked(latest, disk) ? claimed(identifier) : remounted(identifier);
}

/// Waits until udev and the desktop have reacted to the new contents, since the medium may stay in its slot.
void Ejection::awaitSettling() {
    if (!diskInPlace(read())) return;
    const Time begin = system.now();
    const auto timeToMount = std::max<Duration>(timeToMountAgain, readingsToMountAgain * longestReading);
    // Even after the deadline, the desktop has its usual time.
    const auto wait = std::max<Duration>(timeToMountAgain, std::min(timeToMount, deadline - begin));
    const Time end = std::min(deadline, begin + wait + timeToActivate);
    system.wait(std::chrono::ceil<milliseconds>(wait));
    for (; system.now() < end; system.wait(pauseBetweenReadings)) {
        const DiskSnapshot& snapshot = read();
        const KernelDevice* disk = diskInPlace(snapshot);
        if (!disk || protectionOf(snapshot, *disk)) return;
        if (!snapshot.isSettling && !mayBeActivated(snapshot, *disk)) return;
    }
}

const DiskSnapshot& Ejection::read() {
    const Time begin = system.now();
    latest = system.read(identifier);
    longestReading = std::max(longestReading, system.now() - begin);
    return latest;
}

/// Returns the disk in the place of the ejected one, whatever its number, or null if there is no medium.
const KernelDevice* Ejection::diskInPlace(const DiskSnapshot& snapshot) const {
    const auto disks = listedDisks(snapshot);
    const auto found = std::ranges::find(disks, place, &KernelDevice::path);
    return found == disks.end() ? nullptr : *found;
}

}  // namespace tessel
