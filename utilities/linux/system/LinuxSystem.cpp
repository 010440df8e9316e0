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

/// What was read before this counts only if it was all about the same medium.
void readSequenceNumbersAgain(Machine& machine) {
    for (BlockDevice& device : machine.devices)
        device.sequenceNumberAfterwards = readSequenceNumber(device.path);
}

}  // namespace

Machine LinuxSystem::read(const std::string& identifier) {
    Machine machine = readKernelDevices();
    UDisksConnection().describe(machine.devices);
    readSequenceNumbersAgain(machine);
    const BlockDevice* disk = findListedDisk(machine, identifier);
    // This comes after the mounts, so that what was unmounted in between is not taken for mounted elsewhere.
    if (disk && !protectionOf(machine, *disk)) {
        noteActiveFileSystems(machine, *disk);
        readSequenceNumbersAgain(machine);
    }
    return machine;
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

BlockSystem::Ejection LinuxSystem::eject(const std::string& device, Time deadline) {
    return UDisksConnection().eject(device, deadline - now());
}

BlockSystem::Time LinuxSystem::now() {
    return std::chrono::steady_clock::now();
}

void LinuxSystem::wait(std::chrono::milliseconds duration) {
    std::this_thread::sleep_for(duration);
}

}  // namespace tessel
