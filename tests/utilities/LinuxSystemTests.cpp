#include "utilities/linux/system/LinuxSystem.h"

#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/support/LoopDeviceTest.h"

namespace tessel {

namespace {

const std::filesystem::path& log() {
    static const TemporaryFolder folder;
    static const auto file = folder.write("log", "");
    return file;
}

}  // namespace

/// Replaces the system's call in this program: records the lowest free descriptor, after a while and once
/// nobody has locked the log.
extern "C" void sync() noexcept {
    const FileDescriptor lowest = openReadWrite(log(), O_APPEND);
    usleep(100'000);
    flock(lowest.get(), LOCK_EX);
    dprintf(lowest.get(), "%d", lowest.get());
}

TEST(LinuxSystemTests, flushingIsWaitedForUntilTheDeadlineAndKeepsNothingOpen) {
    LinuxSystem system;
    FileDescriptor lock = openReadWrite(log());
    system.flush(system.now() + std::chrono::hours(1));
    EXPECT_EQ(contentOf(log()), "0") << "by a process that had closed all descriptors";

    flock(lock.get(), LOCK_EX);
    const auto begin = system.now();
    system.flush(begin);
    EXPECT_LT(system.now() - begin, std::chrono::seconds(5));
    lock.close();
    waitpid(-1, nullptr, 0);
}

}  // namespace tessel
