#include "utilities/linux/system/LinuxSystem.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/support/LoopDeviceTest.h"

namespace tessel {

namespace {

const TemporaryFolder folder;
const auto log = folder.write("log", "");

}  // namespace

/// Takes the place of the system's call in this program: takes a second, and notes which descriptor is free.
extern "C" void sync() noexcept {
    const FileDescriptor first = openReadWrite(log, O_APPEND);
    sleep(1);
    dprintf(first.get(), "%d", first.get());
}

TEST(LinuxSystemTests, flushingIsWaitedForUntilTheDeadlineAndKeepsNothingOpen) {
    LinuxSystem system;
    system.flush(system.now() + std::chrono::seconds(60));
    EXPECT_EQ(contentOf(log), "0") << "written by a process that had closed all descriptors";
    system.flush(system.now());
    EXPECT_EQ(contentOf(log), "0") << "the second one is not waited for";
    waitpid(-1, nullptr, 0);
}

}  // namespace tessel
