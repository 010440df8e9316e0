// Loop devices when another program takes the free one, and without the kernel's driver.

#include <cerrno>

#include "foundation/Errors.h"
#include "platform/linux/BlockDescriptor.h"
#include "tests/faults/SystemCallFaults.h"
#include "tests/support/LoopDeviceTest.h"

namespace tessel {

using LoopDeviceTests = LoopDeviceTest;

TEST_F(LoopDeviceTests, anotherDeviceIsTriedWhenTheFreeOneIsTaken) {
    const auto isAttached = [card = mediumFile("card")] {
        return isWholeBlockDevice(openReadWrite(LoopDevice({.file = card}).path()).get());
    };
    SystemCallFaults faults("", "");
    faults.plant({.call = "attach", .error = EBUSY});
    EXPECT_TRUE(isAttached());
    faults.plant({.call = "attach", .persists = true, .error = EBUSY});
    EXPECT_THROW(isAttached(), PlatformError);
}

TEST_F(LoopDeviceTests, noneIsAvailableWithoutTheKernelsDriver) {
    SystemCallFaults faults("", "");
    faults.plant({.call = "open", .persists = true, .error = ENOENT});
    EXPECT_FALSE(LoopDevice::isAvailable());
}

}  // namespace tessel
