#include "platform/linux/BlockDescriptor.h"

#include <linux/fs.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <chrono>
#include <string>
#include <system_error>
#include <thread>

namespace tessel {

namespace {

/// BLKGETDISKSEQ, which older headers lack.
constexpr unsigned long getDiskSequenceNumber = _IOR(0x12, 128, uint64_t);

SystemResult askNumber(int descriptor, unsigned long request) {
    uint64_t number = 0;
    if (ioctl(descriptor, request, &number) != 0) return {.error = errno};
    return {.value = number};
}

}  // namespace

std::filesystem::path sysfsFolder(int descriptor) {
    struct stat status{};
    fstat(descriptor, &status);
    return "/sys/dev/block/" + std::to_string(major(status.st_rdev)) + ":" +
           std::to_string(minor(status.st_rdev));
}

bool isWholeBlockDevice(int descriptor) {
    struct stat status{};
    if (fstat(descriptor, &status) != 0 || !S_ISBLK(status.st_mode)) return false;
    const auto folder = sysfsFolder(descriptor);
    std::error_code unknown;
    return std::filesystem::exists(folder, unknown) &&
           !std::filesystem::exists(folder / "partition", unknown) && !unknown;
}

SystemResult diskSequenceNumber(int descriptor) {
    return askNumber(descriptor, getDiskSequenceNumber);
}

SystemResult mediumSize(int descriptor) {
    return askNumber(descriptor, BLKGETSIZE64);
}

SystemResult lockExclusively(int descriptor) {
    // udev holds the lock for a moment while it inspects a disk that has just changed.
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(2);
    for (;;) {
        const auto locked = SystemResult::from(flock(descriptor, LOCK_EX | LOCK_NB));
        if (locked.error != EWOULDBLOCK) return locked;
        if (std::chrono::steady_clock::now() >= end) return {.error = EBUSY};
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
}

}  // namespace tessel
