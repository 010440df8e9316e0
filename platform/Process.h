#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/FileDescriptor.h"

namespace tessel {

/// A child process. Its standard input is the null device; no other descriptor of this program reaches it.
/// Not safe for use on several threads at once. A child must be waited for before its Process is dropped.
class Process {
  public:
    struct Options {
        std::filesystem::path executable;
        std::vector<std::string> arguments;              ///< without the program's name
        std::map<std::string, std::string> environment;  ///< added to this program's own; these values win
        int standardOutput;                              ///< becomes the child's; stays the caller's to close
        int standardError;
    };

    /// How a child ended.
    struct Termination {
        enum class Reason { exit, signal };
        Reason reason = Reason::exit;
        int status = 0;  ///< the exit status, or the number of the signal

        bool isSuccess() const { return reason == Reason::exit && status == 0; }
    };

    /// What is read while the child runs.
    struct Stream {
        enum class State { open, finished };
        int descriptor;
        std::function<State()> read;  ///< called when a read would not block; must not throw
    };

    struct WaitOptions {
        std::span<Stream> streams;
        /// When it elapses the child is asked to end (SIGTERM), and killed 0.5 seconds later.
        std::optional<std::chrono::nanoseconds> timeout;
    };

    struct Ending {
        Termination termination;
        bool didTimeOut = false;  ///< the child was still running when the time-out elapsed
    };

    /// Starts the child. Throws PlatformError when it can't be started.
    static Process launch(const Options& options);

    /// Waits for the child to end and for its streams to finish, reading them meanwhile. A descendant that
    /// keeps a stream open delays the result by `streamGrace` at most: what was read until then is kept.
    Ending waitUntilExit(const WaitOptions& options);

    /// Everything that the child itself wrote is in the pipe when it ends, so only a descendant needs this.
    static constexpr std::chrono::milliseconds streamGrace{1000};
    static constexpr std::chrono::milliseconds killDelay{500};

  private:
    Process(int identifier, FileDescriptor exitSignal) :
        identifier(identifier),
        exitSignal(std::move(exitSignal)) {}

    int identifier;
    FileDescriptor exitSignal;  ///< readable once the child has ended
};

/// A pipe whose reading end collects into memory.
class CollectingPipe {
  public:
    /// Throws PlatformError when there are no descriptors left.
    CollectingPipe();

    int writingEnd() const { return writer.get(); }
    /// To be called once the child is launched: end-of-file comes only when nobody else can write.
    void closeWritingEnd() { writer.close(); }

    Process::Stream stream();
    const std::string& collected() const { return bytes; }

  private:
    Process::Stream::State readMore();

    FileDescriptor reader;
    FileDescriptor writer;
    std::string bytes;
};

}  // namespace tessel
