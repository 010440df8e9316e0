// Calls to the kernel that fail or never answer.

#include "utilities/linux/system/LinuxSystem.h"

#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <string_view>

#include "tests/support/LoopDeviceTest.h"
#include "utilities/linux/system/ActiveFileSystems.h"

namespace tessel {

namespace {

const std::filesystem::path& log() {
    static const TemporaryFolder folder;
    static const auto file = folder.write("log", "");
    return file;
}

}  // namespace

/// Replaces the system's call in this program. Records the lowest free descriptor, after a while and once the
/// log is not locked.
extern "C" void sync() noexcept {
    const FileDescriptor lowest = openReadWrite(log(), O_APPEND);
    usleep(100'000);
    flock(lowest.get(), LOCK_EX);
    dprintf(lowest.get(), "%d", lowest.get());
}

/// Replaces the system's call in this program. Does not answer about one disk for a while.
extern "C" int quotactl(int, const char* device, int, caddr_t) noexcept {
    if (std::string_view(device) == "/dev/stuck") sleep(10);
    errno = std::string_view(device) == "/dev/used"  ? ESRCH
            : std::string_view(device) == "/dev/odd" ? EIO
                                                     : ENODEV;
    return -1;
}

TEST(LinuxSystemTests, silenceAboutAFileSystemAndAnyOtherDoubtMeansThatItIsInUse) {
    const struct {
        const char* part;
        bool isActive;
    } cases[] = {{"unused", false},  {"used", true},  {"odd", true},
                 {"mounted", false}, {"stuck", true}, {"after", true}};
    DiskSnapshot snapshot{.devices = {{.name = "disk", .path = "/sys/block/disk"},
                                      {.name = "other", .path = "/sys/block/other"}}};
    for (const auto& expected : cases)
        snapshot.devices.push_back(
            {.name = expected.part, .path = std::string("/sys/block/disk/") + expected.part});
    snapshot.devices[5].mounts.push_back({.target = "/media/ada/CARD", .isByUDisks = true});
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_FALSE(noteActiveFileSystems(snapshot, snapshot.devices[0], begin + std::chrono::seconds(1)));
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5));
    for (size_t i = 0; i < std::size(cases); ++i)
        EXPECT_EQ(snapshot.devices[2 + i].isFileSystemActive, cases[i].isActive) << cases[i].part;
    EXPECT_FALSE(snapshot.devices[1].isFileSystemActive) << "another disk is not asked about";
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
    while (waitpid(-1, nullptr, 0) < 0 && errno == EINTR) {
    }
}

}  // namespace tessel
