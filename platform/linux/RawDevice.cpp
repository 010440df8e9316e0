#include "platform/RawDevice.h"

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <utility>

#include "platform/linux/BlockDescriptor.h"

namespace tessel {

namespace {

class DescriptorDevice : public RawDevice {
  public:
    explicit DescriptorDevice(FileDescriptor descriptor) : descriptor(std::move(descriptor)) {}

    SystemResult write(std::span<const std::byte> bytes, uint64_t offset) override {
        return SystemResult::from(
            pwrite(descriptor.get(), bytes.data(), bytes.size(), static_cast<off_t>(offset)));
    }

    SystemResult read(std::span<std::byte> bytes, uint64_t offset) override {
        return SystemResult::from(
            pread(descriptor.get(), bytes.data(), bytes.size(), static_cast<off_t>(offset)));
    }

    SystemResult synchronize() override { return SystemResult::from(fsync(descriptor.get())); }

  protected:
    FileDescriptor descriptor;
};

class BlockDevice : public DescriptorDevice {
  public:
    explicit BlockDevice(FileDescriptor given) :
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
        return size.isSuccess() ? SystemResult{.value = bytes.value / size.value} : size;
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
    SystemResult medium;  ///< its sequence number when the device was made
    SystemResult lock;
};

class FileDevice : public DescriptorDevice {
  public:
    using DescriptorDevice::DescriptorDevice;

    SystemResult blockSize() override { return {.value = fileBlockSize}; }

    SystemResult blockCount() override {
        const auto bytes = SystemResult::from(lseek(descriptor.get(), 0, SEEK_END));
        return {.value = bytes.value / fileBlockSize, .error = bytes.error};
    }

    SystemResult disableCaching() override { return {}; }
    SystemResult confirmSameMedium() override { return {}; }

  private:
    static constexpr uint64_t fileBlockSize = 512;
};

}  // namespace

std::unique_ptr<RawDevice> makeBlockDevice(FileDescriptor descriptor) {
    return std::make_unique<BlockDevice>(std::move(descriptor));
}

std::unique_ptr<RawDevice> makeRehearsalDevice(FileDescriptor descriptor) {
    struct stat status{};
    if (fstat(descriptor.get(), &status) == 0 && S_ISREG(status.st_mode)) {
        return std::make_unique<FileDevice>(std::move(descriptor));
    }
    return makeBlockDevice(std::move(descriptor));
}

}  // namespace tessel
