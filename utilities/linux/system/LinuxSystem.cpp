#include "utilities/linux/system/LinuxSystem.h"

#include <sys/wait.h>
#include <unistd.h>

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

void LinuxSystem::unmount(const std::string& device) {
    UDisksConnection().unmount(device);
}

FileDescriptor LinuxSystem::open(const std::string& device) {
    return UDisksConnection().open(device);
}

void LinuxSystem::flush() {
    // Nothing can end a sync() early, so a process of its own waits for it.
    const pid_t flusher = fork();
    if (flusher < 0) throw posixError("The disks could not be flushed", errno);
    if (flusher == 0) {
        close_range(0, UINT_MAX, 0);
        sync();
        _exit(0);
    }
    constexpr std::chrono::seconds limit{10};
    constexpr std::chrono::milliseconds pause{20};
    for (std::chrono::milliseconds waited{0}; waited < limit; waited += pause) {
        if (waitpid(flusher, nullptr, WNOHANG) != 0) return;
        wait(pause);
    }
}

BlockSystem::Ejection LinuxSystem::eject(const std::string& device) {
    return UDisksConnection().eject(device);
}

void LinuxSystem::wait(std::chrono::milliseconds duration) {
    std::this_thread::sleep_for(duration);
}

}  // namespace tessel
