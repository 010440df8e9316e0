#include "utilities/linux/system/LinuxSystem.h"

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <thread>

#include "foundation/Errors.h"
#include "utilities/linux/system/KernelDevices.h"
#include "utilities/linux/system/UDisksConnection.h"

namespace tessel {

Machine LinuxSystem::read() {
    Machine machine = readKernelDevices();
    UDisksConnection().describe(machine.devices);
    // What was read in between counts only if it was all about the same medium.
    for (BlockDevice& device : machine.devices)
        device.sequenceNumberAfterwards = readSequenceNumber(device.path);
    return machine;
}

void LinuxSystem::unmount(const std::string& device, Time deadline) {
    UDisksConnection().unmount(device, deadline - now());
}

FileDescriptor LinuxSystem::open(const std::string& device) {
    return UDisksConnection().open(device);
}

void LinuxSystem::flush(Time deadline) {
    // Nothing can end a sync() early, so a process of its own waits for it.
    const pid_t flusher = fork();
    if (flusher < 0) throw posixError("The disks could not be flushed", errno);
    if (flusher == 0) {
        close_range(0, UINT_MAX, 0);
        sync();
        _exit(0);
    }
    const Time end = std::min(deadline, now() + std::chrono::seconds(10));
    while (waitpid(flusher, nullptr, WNOHANG) == 0 && now() < end)
        wait(std::chrono::milliseconds(20));
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
