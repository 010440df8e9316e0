#include "platform/BlockDevice.h"

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>

#include <utility>

#include "platform/SleepWatch.h"
#include "platform/linux/BlockDescriptor.h"
#include "platform/linux/DiskStatistics.h"

namespace tessel {

namespace {

class LockedBlockDevice : public DescriptorDevice {
  public:
    explicit LockedBlockDevice(FileDescriptor given) :
        DescriptorDevice(std::move(given)),
        medium(diskSequenceNumber(descriptor.get())),
        lock(lockExclusively(descriptor.get())),
        statistics(sysfsFolder(descriptor.get())),
        bytesWrittenBefore(statistics.bytesWritten()) {}

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

    Disturbance disturbance() override {
        const auto present = diskSequenceNumber(descriptor.get());
        if (!medium.isSuccess() || !present.isSuccess() || present.value != medium.value)
            return Disturbance::exchanged;
        if (sleepWatch.hasSlept()) return Disturbance::possiblyExchanged;
        const auto bytesWritten = statistics.bytesWritten();
        const bool isCounted = bytesWrittenBefore.isSuccess() && bytesWritten.isSuccess();
        return isCounted && bytesWritten.value - bytesWrittenBefore.value > ownBytesWritten
                   ? Disturbance::writtenByOthers
                   : Disturbance::none;
    }

  protected:
    SystemResult writeSome(std::span<const std::byte> bytes, uint64_t offset) override {
        const auto written = DescriptorDevice::writeSome(bytes, offset);
        ownBytesWritten += written.value;
        return written;
    }

  private:
    SystemResult medium;  ///< the sequence number when the device was made
    SystemResult lock;
    SleepWatch sleepWatch;
    DiskStatistics statistics;
    SystemResult bytesWrittenBefore;
    uint64_t ownBytesWritten = 0;
};

}  // namespace

std::unique_ptr<RawDevice> makeBlockDevice(FileDescriptor descriptor) {
    return std::make_unique<LockedBlockDevice>(std::move(descriptor));
}

}  // namespace tessel
