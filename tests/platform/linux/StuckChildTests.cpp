// Child processes that even SIGKILL does not end.

#include <signal.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <thread>

#include "platform/CollectingPipe.h"
#include "platform/NewDescriptors.h"
#include "tests/support/OpenResources.h"

namespace tessel {

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

/// Keeps a process from ending, even by SIGKILL, as the kernel does while the process waits for a device.
/// Lasts until this object is destroyed, or for 20 s if the test waits for that process.
class Hold {
  public:
    explicit Hold(pid_t process) {
        auto ready = makePipe();
        tracer = fork();
        if (tracer == 0) {
            // However the process ends, it still has to pass its tracer.
            const bool isTracing = ptrace(PTRACE_SEIZE, process, nullptr, PTRACE_O_TRACEEXIT) == 0;
            alarm(20);
            if (isTracing && write(ready.second.get(), "", 1) == 1) pause();
            _exit(1);
        }
        ready.second.close();
        char byte = 0;
        isEffective = read(ready.first.get(), &byte, 1) == 1;
    }
    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;
    ~Hold() {
        kill(tracer, SIGKILL);
        waitpid(tracer, nullptr, 0);
    }

    bool isEffective = false;

  private:
    pid_t tracer;
};

/// Returns whether the system still has the process, if only as a zombie.
bool isKnown(pid_t process) {
    return kill(process, 0) == 0;
}

class StuckChildTests : public LeavesNothingOpen {};

}  // namespace

TEST_F(StuckChildTests, aChildThatCannotBeKilledIsGivenUpAndReapedOnceItEnds) {
    const struct {
        const char* what;
        std::function<void(std::unique_ptr<Process>, const Process::Stream&)> drop;
    } cases[] = {
        {"waited for",
         [](std::unique_ptr<Process> process, const Process::Stream& stream) {
             const auto ending = process->waitUntilExit({.streams = {&stream, 1}, .timeout = 100ms});
             EXPECT_TRUE(ending.didTimeOut);
             EXPECT_EQ(ending.termination.reason, Process::Termination::Reason::signal);
             EXPECT_EQ(ending.termination.status, SIGKILL);
         }},
        {"dropped", [](std::unique_ptr<Process> process, const Process::Stream&) { process.reset(); }},
    };
    for (const auto& [what, drop] : cases) {
        SCOPED_TRACE(what);
        CollectingPipe output;
        auto process = std::make_unique<Process>(
            Command{
                .executable = "/bin/sh", .arguments = {"-c", "echo $$; exec sleep 60"}, .environment = {}},
            Process::Outputs{.standardOutput = output.writingEnd(), .standardError = STDERR_FILENO});
        const auto stream = output.stream();
        stream.read();
        const pid_t child = std::stoi(output.collected());
        {
            const Hold hold(child);
            if (!hold.isEffective) GTEST_SKIP() << "needs to trace other processes";
            const auto begin = Clock::now();
            drop(std::move(process), stream);
            EXPECT_LT(Clock::now() - begin, 10s);
            EXPECT_TRUE(isKnown(child)) << "it was not stuck";
        }
        for (const auto end = Clock::now() + 20s; isKnown(child) && Clock::now() < end;)
            std::this_thread::sleep_for(10ms);
        EXPECT_FALSE(isKnown(child)) << "it was not reaped";
    }
}

}  // namespace tessel
