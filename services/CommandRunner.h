#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Process.h"
#include "platform/concurrency/Task.h"

namespace tessel {

/// The result of a finished command.
struct CommandResult {
    int32_t status = 0;  ///< the exit status, or the number of the signal that ended the command
    std::string standardOutput;
    std::string standardError;
    bool didTimeOut = false;  ///< whether the command was still running when its time-out elapsed

    /// Returns both streams as trimmed text, output first. A stream that is not UTF-8 counts as empty.
    [[nodiscard]] std::string combinedOutput() const;

    /// Returns the text that tells the user why a command failed: the command's own, or else the fallback.
    [[nodiscard]] std::string failureMessage(std::string_view fallback) const;
};

/// Runs external commands. It has no state, and the commands do not affect each other.
class CommandRunner {
  public:
    /// The time-out in seconds. There is none if it is absent, zero or negative.
    using Timeout = std::optional<std::chrono::duration<double>>;

    /// Runs the command on a thread of its own. A non-zero status or a time-out is a result, not an error. A
    /// command that outlives its time-out gets SIGTERM, and SIGKILL 0.5 seconds later (see Process). Once the
    /// command has ended, a descendant that keeps its streams open delays the result by a second at most;
    /// what was read by then is kept. Throws PlatformError when the command can't be started, or prints more
    /// than 16 MiB on one of its streams.
    Task<CommandResult> run(Command command, Timeout timeout) const;
};

}  // namespace tessel
