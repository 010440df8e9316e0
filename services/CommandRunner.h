#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/concurrency/Task.h"

namespace tessel {

/// What a command left behind.
struct CommandResult {
    int32_t status = 0;  ///< the exit status, or the number of the signal that ended the command
    std::string standardOutput;
    std::string standardError;
    bool didTimeOut = false;  ///< the command was still running when its time-out elapsed

    /// Both streams as trimmed text, output first. A stream that is not UTF-8 counts as empty.
    std::string combinedOutput() const;

    /// What to tell the user of a command that failed: its own words, else the fallback.
    std::string failureMessage(std::string_view fallback) const;
};

/// Runs external commands to their end. Stateless; one command knows nothing of another.
class CommandRunner {
  public:
    struct Command {
        std::filesystem::path executable;
        std::vector<std::string> arguments;              ///< without the program's name
        std::map<std::string, std::string> environment;  ///< added to this program's own; these values win
        std::optional<std::chrono::duration<double>> timeout;  ///< none when absent, zero or negative
    };

    /// Runs the command on a thread of its own. A non-zero status or a time-out is a result, not an error.
    /// A command that outlives its time-out gets SIGTERM, and SIGKILL 0.5 seconds later. Once the command has
    /// ended, a descendant that keeps its streams open delays the result by a second at most; what was read
    /// until then is kept. Throws PlatformError when the command can't be started.
    Task<CommandResult> run(Command command) const;
};

}  // namespace tessel
