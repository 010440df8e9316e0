#include "platform/BlockDevice.h"

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>

#include <utility>

#include "platform/DescriptorDevice.h"
#include "platform/linux/BlockDescriptor.h"

namespace tessel {

namespace {

class LockedBlockDevice : public DescriptorDevice {
  public:
    explicit LockedBlockDevice(FileDescriptor given) :
        DescriptorDevice(std::move(given)),
        medium(diskSequenceNumber(descriptor.get())),
        lock(lockExclusively(descriptor.get())) {}

    SystemResult blockSize() override {
        if (!isWholeBlockDevice(descriptor.get())) return {.error = ENOTBLK};
        if (!lock.isSuccess()) return lock;
        int bytes = 0;
        if (ioctl(descriptor.get(), BLKSSZGET, &bytes) != 0) return {.error = errno};
        return SystemResult::from(bytes);
    }

    SystemResult blockCount() override {
        const auto bytes = mediumSize(descriptor.get());
        const auto size = blockSize();
        if (!bytes.isSuccess()) return bytes;
        if (!size.isSuccess() || size.value == 0) return size;
        return {.value = bytes.value / size.value};
    }

    SystemResult disableCaching() override {
        const int flags = fcntl(descriptor.get(), F_GETFL);
        return SystemResult::from(flags < 0 ? flags : fcntl(descriptor.get(), F_SETFL, flags | O_DIRECT));
    }

    SystemResult confirmSameMedium() override {
        if (!medium.isSuccess()) return medium;
        const auto present = diskSequenceNumber(descriptor.get());
        if (!present.isSuccess()) return present;
        return present.value == medium.value ? SystemResult() : SystemResult{.error = ENOMEDIUM};
    }

  private:
    SystemResult medium;  ///< holds its sequence number from when the device was made
    SystemResult lock;
};

}  // namespace

std::unique_ptr<RawDevice> makeBlockDevice(FileDescriptor descriptor) {
    return std::make_unique<LockedBlockDevice>(std::move(descriptor));
}

}  // namespace tessel
