#include "services/CommandRunner.h"

#include <array>

#include "foundation/Text.h"
#include "platform/CollectingPipe.h"
#include "platform/Process.h"
#include "platform/concurrency/Background.h"

namespace tessel {

namespace {

CommandResult runBlocking(const Command& command, CommandRunner::Timeout timeout) {
    CollectingPipe outputPipe;
    CollectingPipe errorPipe;
    Process process(command,
                    {.standardOutput = outputPipe.writingEnd(), .standardError = errorPipe.writingEnd()});

    const std::array streams{outputPipe.stream(), errorPipe.stream()};
    Process::WaitOptions wait{.streams = streams, .timeout = std::nullopt};
    if (timeout && timeout->count() > 0)
        wait.timeout = std::chrono::duration_cast<std::chrono::nanoseconds>(*timeout);
    const auto ending = process.waitUntilExit(wait);
    return {.status = ending.termination.status,
            .standardOutput = outputPipe.collected(),
            .standardError = errorPipe.collected(),
            .didTimeOut = ending.didTimeOut};
}

}  // namespace

std::string CommandResult::combinedOutput() const {
    const auto output = trimmedOutput(standardOutput);
    auto error = trimmedOutput(standardError);
    if (output.empty()) return error;
    return error.empty() ? output : output + "\n" + error;
}

std::string CommandResult::failureMessage(std::string_view fallback) const {
    constexpr std::string_view timeoutSentence = "The command timed out.";
    const auto text = combinedOutput();
    if (!didTimeOut) return text.empty() ? std::string(fallback) : text;
    return text.empty() ? std::string(timeoutSentence) : text + "\n" + std::string(timeoutSentence);
}

Task<CommandResult> CommandRunner::run(Command command, Timeout timeout) const {
    co_return co_await inBackground(
        [&command, timeout](const std::stop_token&) { return runBlocking(command, timeout); });
}

}  // namespace tessel
