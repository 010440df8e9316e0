#include "platform/Process.h"

#include <signal.h>
#include <time.h>
#include <unistd.h>

#include <thread>

#include "platform/CollectingPipe.h"
#include "tests/support/OpenResources.h"

namespace tessel {

class ProcessTests : public LeavesNothingOpen {};

TEST_F(ProcessTests, aChildThatWasNotWaitedForIsEndedWithItsProcess) {
    const CollectingPipe output;
    const auto begin = std::chrono::steady_clock::now();
    {
        const Process dropped({.executable = "/bin/sh", .arguments = {"-c", "trap '' TERM; exec sleep 60"}},
                              {.standardOutput = output.writingEnd(), .standardError = STDERR_FILENO});
        std::this_thread::sleep_for(std::chrono::milliseconds(200));  // until it ignores SIGTERM
    }
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(20));
}

TEST_F(ProcessTests, waitingTakesNoProcessorTime) {
    const auto begin = clock();
    Process child({.executable = "/bin/sleep", .arguments = {"0.5"}}, {STDOUT_FILENO, STDERR_FILENO});
    EXPECT_TRUE(child.waitUntilExit({}).termination.isSuccess());
    EXPECT_LT(clock() - begin, CLOCKS_PER_SEC / 10);
}

TEST_F(ProcessTests, aSignalDoesNotEndTheWaiting) {
    const auto usual = signal(SIGUSR1, [](int) {});
    Process child({.executable = "/bin/sh", .arguments = {"-c", "sleep .1; kill -USR1 $PPID; exec sleep 9"}},
                  {STDOUT_FILENO, STDERR_FILENO});
    EXPECT_TRUE(child.waitUntilExit({.timeout = std::chrono::milliseconds(500)}).didTimeOut);
    signal(SIGUSR1, usual);
}

}  // namespace tessel
