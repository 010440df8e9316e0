#include "utilities/linux/system/LinuxSystem.h"

#include <unistd.h>

#include <thread>

#include "utilities/linux/system/DiskServiceClient.h"
#include "utilities/linux/system/KernelReader.h"

namespace tessel {

Machine LinuxSystem::read() {
    Machine machine = readKernelDevices();
    DiskServiceClient().describe(machine.devices);
    // Whatever was read in between counts only if it was about one and the same medium.
    for (BlockDevice& device : machine.devices)
        device.sequenceNumberAfterwards = readSequenceNumber(device.path);
    return machine;
}

void LinuxSystem::unmount(const std::string& device) {
    DiskServiceClient().unmount(device);
}

FileDescriptor LinuxSystem::open(const std::string& device) {
    return DiskServiceClient().open(device);
}

void LinuxSystem::flush() {
    sync();
}

BlockSystem::Ejection LinuxSystem::eject(const std::string& device) {
    return DiskServiceClient().eject(device);
}

void LinuxSystem::wait(std::chrono::milliseconds duration) {
    std::this_thread::sleep_for(duration);
}

}  // namespace tessel
