#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>

#include "rehearsal/LoopDevice.h"
#include "tests/support/TemporaryFolder.h"

namespace tessel {

inline FileDescriptor openReadWrite(const std::filesystem::path& path, int flags = 0) {
    return FileDescriptor(open(path.c_str(), O_RDWR | O_CLOEXEC | flags));
}

/// Attaches files of its folder as block devices, where the user may do so.
class LoopDeviceTest : public testing::Test {
  protected:
    void SetUp() override {
        if (!LoopDevice::isAvailable()) GTEST_SKIP() << "needs loop devices";
    }

    std::filesystem::path mediumFile(const std::string& name, uint64_t size = 1 << 20) const {
        const auto file = folder.write(name, "");
        std::filesystem::resize_file(file, size);
        return file;
    }

    TemporaryFolder folder;
};

}  // namespace tessel
