#pragma once

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/FileDescriptor.h"

namespace tessel {

/// A program to start, with its arguments and environment.
struct Command {
    std::filesystem::path executable;
    std::vector<std::string> arguments;              ///< without the program's name
    std::map<std::string, std::string> environment;  ///< added to this program's own; these values win
};

/// A child process. Its standard input is the null device, and apart from its two outputs no descriptor of
/// this program reaches it. A child that is still running when its Process is destroyed is killed. One that
/// does not end `killDelay` after it was killed, because it waits for a device in the kernel, is given up:
/// nothing waits for it any longer, and it is reaped when it ends. A Process must not be used on several
/// threads at once.
class Process {
  public:
    /// The child's own standard output and standard error; the caller still has to close its copies.
    struct Outputs {
        int standardOutput;
        int standardError;
    };

    /// How a child ended.
    struct Termination {
        enum class Reason { exit, signal };
        Reason reason = Reason::exit;
        int status = 0;  ///< the exit status, or the number of the signal

        [[nodiscard]] bool isSuccess() const { return reason == Reason::exit && status == 0; }
    };

    /// A descriptor that is read while the child runs.
    struct Stream {
        enum class State {
            open,
            finished,  ///< nothing more will come
            full,      ///< more came than can be kept
        };
        int descriptor;
        std::function<State()> read;  ///< called when a read would not block; must not throw
    };

    struct WaitOptions {
        std::span<const Stream> streams;
        /// The time until the child is asked to end (SIGTERM). `killDelay` later it is killed, and another
        /// `killDelay` later it is given up, which counts as an ending by that signal.
        std::optional<std::chrono::nanoseconds> timeout;
    };

    struct Ending {
        Termination termination;
        bool didTimeOut = false;  ///< whether the child was still running when the time-out elapsed
    };

    static constexpr std::chrono::milliseconds killDelay{500};
    /// The time for which streams are still read once the child has ended. All that it wrote itself is in the
    /// pipe by then, so only a descendant can need this.
    static constexpr std::chrono::milliseconds streamGrace{1000};
    /// The number of bytes kept of a stream; a child that prints more is ended.
    static constexpr size_t outputLimit = size_t{16} << 20;

    /// Starts the child. Throws PlatformError when it can't be started.
    [[nodiscard]] Process(const Command& command, const Outputs& outputs);
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;
    ~Process();

    /// Reads the streams until the child has ended and they have finished. A descendant that keeps a stream
    /// open delays the result by `streamGrace` at most; what was read by then is kept. Throws PlatformError
    /// when a stream is full or the child can't be watched any more; the child is then killed as the Process
    /// is destroyed. Requires: it was not called before.
    [[nodiscard]] Ending waitUntilExit(const WaitOptions& options);

  private:
    using Streams = std::vector<Stream>;
    using TimePoint = std::chrono::steady_clock::time_point;

    explicit Process(const std::filesystem::path& executable);

    bool readUntilExit(Streams& streams, std::optional<TimePoint> deadline) const;
    void readUntilFinished(Streams& streams, TimePoint deadline) const;
    bool readWhatIsThere(Streams& streams, std::optional<TimePoint> deadline) const;
    void giveUp();
    Termination reap();

    std::string name;           ///< the program in quotation marks, for error texts
    int identifier = 0;         ///< of a child that must still be reaped, or else 0
    FileDescriptor exitSignal;  ///< open until the child is reaped; readable once it has ended
};

}  // namespace tessel
