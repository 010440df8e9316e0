#include "utilities/linux/system/LinuxSystem.h"

#include <unistd.h>

#include <algorithm>
#include <thread>

#include "utilities/linux/DiskProtection.h"
#include "utilities/linux/system/ActiveFileSystems.h"
#include "utilities/linux/system/HelperProcess.h"
#include "utilities/linux/system/KernelDevices.h"
#include "utilities/linux/system/UDisksConnection.h"

namespace tessel {

namespace {

constexpr std::chrono::seconds timeToAnswer{1};
constexpr int mostSilences = 5;

/// Reads the sequence numbers again. What was read before counts only if both readings agree, and so concern
/// the same medium.
void readSequenceNumbersAgain(DiskSnapshot& snapshot) {
    for (KernelDevice& device : snapshot.devices)
        device.sequenceNumberAfterwards = readSequenceNumber(device.path);
}

}  // namespace

DiskSnapshot LinuxSystem::read(const std::string& identifier) {
    DiskSnapshot snapshot = readKernelDevices();
    UDisksConnection().describe(snapshot.devices);
    readSequenceNumbersAgain(snapshot);
    const KernelDevice* disk = findListedDisk(snapshot, identifier);
    // This comes after the mounts, so that a volume unmounted in between does not count as mounted elsewhere.
    if (disk && !protectionOf(snapshot, *disk)) {
        // Each unanswered question leaves a process behind, so a kernel that stays silent is not asked again.
        const auto deadline = now() + (silences < mostSilences ? timeToAnswer : std::chrono::seconds(0));
        if (!noteActiveFileSystems(snapshot, *disk, deadline)) ++silences;
        readSequenceNumbersAgain(snapshot);
    }
    return snapshot;
}

void LinuxSystem::unmount(const std::string& device, Time deadline) {
    UDisksConnection().unmount(device, deadline - now());
}

FileDescriptor LinuxSystem::open(const std::string& device) {
    return UDisksConnection().open(device);
}

void LinuxSystem::flush(Time deadline) {
    answersOf([](int) { sync(); }, std::min(deadline, now() + std::chrono::seconds(10)));
}

BlockSystem::EjectOutcome LinuxSystem::eject(const std::string& device, Time deadline) {
    return UDisksConnection().eject(device, deadline - now());
}

BlockSystem::Time LinuxSystem::now() {
    return std::chrono::steady_clock::now();
}

void LinuxSystem::wait(std::chrono::milliseconds duration) {
    std::this_thread::sleep_for(duration);
}

}  // namespace tessel
