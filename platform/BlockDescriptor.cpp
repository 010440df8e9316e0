#include "platform/BlockDescriptor.h"

#include <linux/fs.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <filesystem>
#include <string>

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

bool isWholeBlockDevice(int descriptor) {
    struct stat status{};
    if (fstat(descriptor, &status) != 0 || !S_ISBLK(status.st_mode)) return false;
    const auto inSysfs = "/sys/dev/block/" + std::to_string(major(status.st_rdev)) + ":" +
                         std::to_string(minor(status.st_rdev));
    return std::filesystem::exists(inSysfs) && !std::filesystem::exists(inSysfs + "/partition");
}

SystemResult diskSequenceNumber(int descriptor) {
    return askNumber(descriptor, getDiskSequenceNumber);
}

SystemResult mediumSize(int descriptor) {
    return askNumber(descriptor, BLKGETSIZE64);
}

SystemResult lockExclusively(int descriptor) {
    const auto locked = SystemResult::from(flock(descriptor, LOCK_EX | LOCK_NB));
    return locked.error == EWOULDBLOCK ? SystemResult{.error = EBUSY} : locked;
}

}  // namespace tessel
