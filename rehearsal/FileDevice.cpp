#include "rehearsal/FileDevice.h"

#include <utility>

#include "platform/BlockDevice.h"
#include "platform/Files.h"

namespace tessel {

namespace {

class FileDevice : public DescriptorDevice {
  public:
    using DescriptorDevice::DescriptorDevice;

    SystemResult blockSize() override { return {.value = fileBlockSize}; }
    SystemResult blockCount() override { return {.value = fileStatus(descriptor).sizeBytes / fileBlockSize}; }
    SystemResult disableCaching() override { return {}; }
    Disturbance disturbance() override { return Disturbance::none; }

  private:
    static constexpr uint64_t fileBlockSize = 512;
};

}  // namespace

std::unique_ptr<RawDevice> makeRehearsalDevice(FileDescriptor descriptor) {
    if (!fileStatus(descriptor).isRegularFile) return makeBlockDevice(std::move(descriptor));
    return std::make_unique<FileDevice>(std::move(descriptor));
}

}  // namespace tessel
