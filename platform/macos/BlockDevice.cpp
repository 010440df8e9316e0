#include "platform/BlockDevice.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/param.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <initializer_list>
#include <string_view>
#include <utility>

#include "platform/SleepWatch.h"

namespace tessel {

namespace {

// The requests of <sys/disk.h>, repeated here because some sets of this system's headers lack that file.
constexpr unsigned long synchronizeCache = _IO('d', 22);
constexpr unsigned long getBlockSize = _IOR('d', 24, uint32_t);
constexpr unsigned long getBlockCount = _IOR('d', 25, uint64_t);

/// Returns whether the descriptor belongs to a whole disk, such as "/dev/rdisk4", and not to a part of one.
bool isWholeDisk(int descriptor) {
    struct stat status{};
    char buffer[MAXPATHLEN];
    if (fstat(descriptor, &status) != 0 || fcntl(descriptor, F_GETPATH, buffer) != 0) return false;
    if (!S_ISCHR(status.st_mode) && !S_ISBLK(status.st_mode)) return false;
    const std::string_view path = buffer;
    return std::ranges::any_of(
        std::initializer_list<std::string_view>{"/dev/rdisk", "/dev/disk"}, [path](std::string_view prefix) {
            return path.starts_with(prefix) &&
                   path.find_first_not_of("0123456789", prefix.size()) == std::string_view::npos;
        });
}

/// Returns whether a request failed only because it is unknown or not allowed here.
bool isRefusal(int error) {
    const auto refusals = {ENOTTY, ENOTSUP, EOPNOTSUPP, EINVAL, EPERM, EACCES};
    return std::ranges::find(refusals, error) != refusals.end();
}

class DiskDevice : public DescriptorDevice {
  public:
    using DescriptorDevice::DescriptorDevice;

    SystemResult blockSize() override {
        if (!isWholeDisk(descriptor.get())) return {.error = ENOTBLK};
        return ask<uint32_t>(getBlockSize);
    }
    SystemResult blockCount() override { return ask<uint64_t>(getBlockCount); }
    SystemResult disableCaching() override {
        return SystemResult::from(fcntl(descriptor.get(), F_NOCACHE, 1));
    }

    SystemResult synchronize() override {
        const auto flushed = DescriptorDevice::synchronize();
        if (!flushed.isSuccess() || fcntl(descriptor.get(), F_FULLFSYNC, 0) == 0) return flushed;
        // File systems support the request above and devices this one; either may be missing.
        SystemResult flushedMedium;
        do {
            flushedMedium = SystemResult::from(ioctl(descriptor.get(), synchronizeCache));
        } while (flushedMedium.isInterrupted());
        return isRefusal(flushedMedium.error) ? flushed : flushedMedium;
    }

    Disturbance disturbance() override {
        // An open device stays with its medium: another one gets a device of its own, and once the medium is
        // gone every read and write fails. Only while the computer sleeps may an exchange go unnoticed.
        return sleepWatch.hasSlept() ? Disturbance::possiblyExchanged : Disturbance::none;
    }

  private:
    template <typename Number>
    SystemResult ask(unsigned long request) const {
        Number number = 0;
        if (ioctl(descriptor.get(), request, &number) != 0) return {.error = errno};
        return {.value = number};
    }

    SleepWatch sleepWatch;
};

}  // namespace

std::unique_ptr<RawDevice> makeBlockDevice(FileDescriptor descriptor) {
    return std::make_unique<DiskDevice>(std::move(descriptor));
}

}  // namespace tessel
