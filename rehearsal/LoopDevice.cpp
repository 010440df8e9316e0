#include "rehearsal/LoopDevice.h"

#include <fcntl.h>
#include <linux/loop.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>

#include "foundation/Errors.h"

namespace tessel {

namespace {

constexpr const char* controlPath = "/dev/loop-control";

/// Returns the path of a device that is free at this moment. Throws PlatformError.
std::filesystem::path freeDevice() {
    const FileDescriptor control(open(controlPath, O_RDWR | O_CLOEXEC));
    const int number = control.isOpen() ? ioctl(control.get(), LOOP_CTL_GET_FREE) : -1;
    if (number < 0) throw posixError(controlPath, errno);
    return "/dev/loop" + std::to_string(number);
}

FileDescriptor openForWriting(const std::filesystem::path& path) {
    FileDescriptor descriptor(open(path.c_str(), O_RDWR | O_CLOEXEC));
    if (!descriptor.isOpen()) throw posixError(path.string(), errno);
    return descriptor;
}

}  // namespace

bool LoopDevice::isAvailable() {
    try {
        return access(freeDevice().c_str(), R_OK | W_OK) == 0;
    } catch (const PlatformError&) {
        return false;
    }
}

LoopDevice::LoopDevice(const Options& options) {
    const FileDescriptor file = openForWriting(options.file);
    loop_config configuration{};
    configuration.fd = static_cast<uint32_t>(file.get());
    configuration.block_size = options.blockSize;
    // With this flag the kernel detaches the file when the last descriptor is closed.
    configuration.info.lo_flags = LO_FLAGS_AUTOCLEAR;

    int attemptsLeft = 100;
    do {
        devicePath = freeDevice();
        device = openForWriting(devicePath);
        if (ioctl(device.get(), LOOP_CONFIGURE, &configuration) == 0) return;
        // Another process may have taken the free device first.
    } while (errno == EBUSY && --attemptsLeft > 0);
    throw posixError(options.file.string() + " could not be attached to " + devicePath.string(), errno);
}

}  // namespace tessel
