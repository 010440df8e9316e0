#include "platform/Process.h"

#include <unistd.h>

#include <thread>

#include "platform/CollectingPipe.h"
#include "tests/support/OpenResources.h"

namespace tessel {

class ProcessTests : public LeavesNothingOpen {};

TEST_F(ProcessTests, aChildThatNobodyWaitedForIsEndedWithItsProcess) {
    const CollectingPipe output;
    const auto begin = std::chrono::steady_clock::now();
    {
        const Process dropped =
            Process::launch({.executable = "/bin/sh", .arguments = {"-c", "trap '' TERM; exec sleep 60"}},
                            {.standardOutput = output.writingEnd(), .standardError = STDERR_FILENO});
        std::this_thread::sleep_for(std::chrono::milliseconds(200));  // until it ignores what is polite
    }
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(20));
}

TEST_F(ProcessTests, aChildThatHasEndedLeavesNothingOpen) {
    auto child = Process::launch({.executable = "/bin/true"}, {STDOUT_FILENO, STDERR_FILENO});
    EXPECT_TRUE(child.waitUntilExit({}).termination.isSuccess());
    EXPECT_EQ(openDescriptors(), before);
}

}  // namespace tessel
