#include "platform/Process.h"

#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>
#include <thread>
#include <vector>

#include "foundation/Errors.h"
#include "platform/CollectingPipe.h"
#include "tests/support/OpenResources.h"

namespace tessel {

namespace {

class ProcessTests : public LeavesNothingOpen {
  protected:
    static Process launchSleep(CollectingPipe& output) {
        Process process =
            Process::launch({.executable = "/bin/sh", .arguments = {"-c", "trap '' TERM; exec sleep 60"}},
                            {.standardOutput = output.writingEnd(), .standardError = STDERR_FILENO});
        output.closeWritingEnd();
        return process;
    }
};

/// Lowers the number of descriptors that poll accepts, for as long as this exists.
class PollLimit {
  public:
    explicit PollLimit(rlim_t descriptors) {
        getrlimit(RLIMIT_NOFILE, &before);
        const rlimit lowered{.rlim_cur = descriptors, .rlim_max = before.rlim_max};
        setrlimit(RLIMIT_NOFILE, &lowered);
    }
    PollLimit(const PollLimit&) = delete;
    PollLimit& operator=(const PollLimit&) = delete;
    ~PollLimit() { setrlimit(RLIMIT_NOFILE, &before); }

  private:
    rlimit before{};
};

}  // namespace

TEST_F(ProcessTests, aChildThatCannotBeWatchedIsEnded) {
    CollectingPipe output;
    Process process = launchSleep(output);
    const std::vector streams(65, output.stream());
    const PollLimit limit(64);
    try {
        static_cast<void>(process.waitUntilExit({.streams = streams, .timeout = std::nullopt}));
        ADD_FAILURE() << "the child ended by itself";
    } catch (const PlatformError& error) {
        EXPECT_EQ(error.localizedDescription(),
                  "“/bin/sh” could not be watched: " + systemErrorText(EINVAL) + ".");
    }
}

TEST_F(ProcessTests, aChildThatNobodyWaitedForIsEndedWithItsProcess) {
    CollectingPipe output;
    const auto begin = std::chrono::steady_clock::now();
    {
        const Process dropped = launchSleep(output);
        std::this_thread::sleep_for(std::chrono::milliseconds(200));  // until it ignores what is polite
    }
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(20));
}

}  // namespace tessel
