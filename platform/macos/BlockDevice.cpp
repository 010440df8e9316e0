#include "platform/BlockDevice.h"

#include <fcntl.h>
#include <sys/ioctl.h>

#include <utility>

#include "platform/DescriptorDevice.h"

namespace tessel {

namespace {

// The requests of <sys/disk.h>, written out, since not every set of this system's headers has that file.
constexpr unsigned long synchronizeCache = _IO('d', 22);
constexpr unsigned long getBlockSize = _IOR('d', 24, uint32_t);
constexpr unsigned long getBlockCount = _IOR('d', 25, uint64_t);

class DiskDevice : public DescriptorDevice {
  public:
    using DescriptorDevice::DescriptorDevice;

    SystemResult blockSize() override { return ask<uint32_t>(getBlockSize); }
    SystemResult blockCount() override { return ask<uint64_t>(getBlockCount); }
    SystemResult disableCaching() override {
        return SystemResult::from(fcntl(descriptor.get(), F_NOCACHE, 1));
    }

    SystemResult synchronize() override {
        const auto flushed = DescriptorDevice::synchronize();
        // Has the medium itself keep what it was sent: file systems know the first request, devices the
        // second, and neither has to be known.
        if (flushed.isSuccess() && fcntl(descriptor.get(), F_FULLFSYNC, 0) != 0)
            ioctl(descriptor.get(), synchronizeCache);
        return flushed;
    }

    SystemResult confirmSameMedium() override {
        // An open device stays with its medium: another one gets a device of its own, and once the medium is
        // gone every read and write fails.
        return {};
    }

  private:
    template <typename Number>
    SystemResult ask(unsigned long request) const {
        Number number = 0;
        if (ioctl(descriptor.get(), request, &number) != 0) return {.error = errno};
        return {.value = number};
    }
};

}  // namespace

std::unique_ptr<RawDevice> makeBlockDevice(FileDescriptor descriptor) {
    return std::make_unique<DiskDevice>(std::move(descriptor));
}

}  // namespace tessel
