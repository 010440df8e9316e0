// Child processes whose system calls have to be repeated.

#include <string.h>
#include <unistd.h>

#include <cerrno>

#include "platform/CollectingPipe.h"
#include "tests/faults/SystemCallFaults.h"
#include "tests/support/OpenResources.h"

namespace tessel {

class ProcessFaultTests : public LeavesNothingOpen {};

TEST_F(ProcessFaultTests, aCallThatMustBeRepeatedLosesNoOutput) {
    const struct {
        const char* call;
        int error;
    } cases[] = {{"read", EINTR}, {"poll", EINTR}, {"poll", EAGAIN}, {"waitpid", EINTR}};
    for (const auto& [call, error] : cases) {
        SCOPED_TRACE(std::string(call) + ' ' + strerrorname_np(error));
        SystemCallFaults faults("", "");
        faults.plant({.call = call, .error = error});
        const auto begin = std::chrono::steady_clock::now();
        CollectingPipe output;
        Process child({.executable = "/bin/echo", .arguments = {"whole"}, .environment = {}},
                      {.standardOutput = output.writingEnd(), .standardError = STDERR_FILENO});
        const auto stream = output.stream();
        const auto ending = child.waitUntilExit({.streams = {&stream, 1}, .timeout = std::nullopt});
        EXPECT_TRUE(faults.remove()) << "the call did not happen";
        EXPECT_TRUE(ending.termination.isSuccess());
        EXPECT_EQ(output.collected(), "whole\n");
        EXPECT_LT(std::chrono::steady_clock::now() - begin, Process::streamGrace) << "the end was missed";
    }
}

}  // namespace tessel
