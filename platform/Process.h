#pragma once

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/Command.h"
#include "platform/FileDescriptor.h"

namespace tessel {

/// A child process. Its standard input is the null device, and no descriptor of this program reaches it but
/// the two it is given. A child that is still running when its Process is dropped is killed. Not safe for use
/// on several threads at once.
class Process {
  public:
    /// The descriptors that become the child's; the caller still has to close its own.
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

    /// What is read while the child runs.
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
        /// When it elapses the child is asked to end (SIGTERM), and killed after `killDelay`.
        std::optional<std::chrono::nanoseconds> timeout;
    };

    struct Ending {
        Termination termination;
        bool didTimeOut = false;  ///< the child was still running when the time-out elapsed
    };

    static constexpr std::chrono::milliseconds killDelay{500};
    /// Everything that the child itself wrote is in the pipe when it ends, so only a descendant needs this.
    static constexpr std::chrono::milliseconds streamGrace{1000};
    /// How many bytes of each stream are kept.
    static constexpr size_t outputLimit = size_t{16} << 20;

    /// Starts the child. Throws PlatformError when it can't be started.
    [[nodiscard]] static Process launch(const Command& command, const Outputs& outputs);

    Process(Process&&) noexcept = default;
    ~Process();

    /// Waits for the child to end and for its streams to finish, reading them meanwhile. A descendant that
    /// keeps a stream open delays the result by `streamGrace` at most: what was read until then is kept.
    /// Throws PlatformError when a stream is full or the child can't be watched; a child that is still
    /// running then is killed with its Process.
    [[nodiscard]] Ending waitUntilExit(const WaitOptions& options);

  private:
    using Streams = std::vector<Stream>;
    using TimePoint = std::chrono::steady_clock::time_point;

    explicit Process(const std::filesystem::path& executable);

    bool readUntilExit(Streams& streams, std::optional<TimePoint> deadline) const;
    void readUntilFinished(Streams& streams, TimePoint deadline) const;
    bool readWhatIsThere(Streams& streams, std::optional<TimePoint> deadline) const;
    Termination reap();

    std::string name;  ///< for people
    int identifier = 0;
    FileDescriptor exitSignal;  ///< open until the child is reaped; readable once it has ended
};

}  // namespace tessel
