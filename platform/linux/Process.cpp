#include "platform/Process.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

// The header of glibc 2.36 forgets to say so itself.
extern "C" {
#include <sys/pidfd.h>
}

#include <algorithm>
#include <array>
#include <cerrno>

#include "foundation/Errors.h"

namespace tessel {

namespace {

using Clock = std::chrono::steady_clock;

/// What posix_spawn wants beside the program: descriptors 0 to 2, and ordinary signal handling.
class SpawnSettings {
  public:
    explicit SpawnSettings(const Process::Options& options) {
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_adddup2(&actions, options.standardOutput, STDOUT_FILENO);
        posix_spawn_file_actions_adddup2(&actions, options.standardError, STDERR_FILENO);
        // Libraries may have opened descriptors that are not close-on-exec.
        posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);

        sigset_t none;
        sigemptyset(&none);
        sigset_t all;
        sigfillset(&all);
        posix_spawnattr_init(&attributes);
        posix_spawnattr_setsigmask(&attributes, &none);
        posix_spawnattr_setsigdefault(&attributes, &all);
        posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }
    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;
    ~SpawnSettings() {
        posix_spawn_file_actions_destroy(&actions);
        posix_spawnattr_destroy(&attributes);
    }

    posix_spawn_file_actions_t actions{};
    posix_spawnattr_t attributes{};
};

/// This program's environment with the additions, as "NAME=value" texts.
std::vector<std::string> environmentWith(const std::map<std::string, std::string>& additions) {
    std::vector<std::string> variables;
    for (char** entry = environ; entry && *entry; ++entry) {
        const std::string variable = *entry;
        if (!additions.contains(variable.substr(0, variable.find('=')))) variables.push_back(variable);
    }
    for (const auto& [name, value] : additions)
        variables.push_back(name + "=" + value);
    return variables;
}

std::vector<char*> nullTerminated(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (auto& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

/// Whoever started this program may have left SIGCHLD ignored, and then the system forgets how children end.
void keepEndingsOfChildren() {
    struct sigaction current{};
    if (sigaction(SIGCHLD, nullptr, &current) == 0 && current.sa_handler == SIG_IGN) signal(SIGCHLD, SIG_DFL);
}

Process::Termination reap(int identifier) {
    int status = SIGKILL;  // an ending that can't be had counts as a kill, never as success
    while (waitpid(identifier, &status, 0) < 0 && errno == EINTR) {
    }
    if (WIFSIGNALED(status)) return {Process::Termination::Reason::signal, WTERMSIG(status)};
    return {Process::Termination::Reason::exit, WEXITSTATUS(status)};
}

/// The time for poll(2), rounded up so that it never returns just before the deadline.
int millisecondsUntil(std::optional<Clock::time_point> deadline) {
    if (!deadline) return -1;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(*deadline - Clock::now()).count();
    return static_cast<int>(std::clamp<int64_t>(left, 0, 1'000'000'000));
}

}  // namespace

Process Process::launch(const Options& options) {
    std::vector<std::string> arguments{options.executable.string()};
    arguments.insert(arguments.end(), options.arguments.begin(), options.arguments.end());
    auto environment = environmentWith(options.environment);
    const SpawnSettings settings(options);
    keepEndingsOfChildren();

    pid_t identifier = 0;
    const int error =
        posix_spawn(&identifier, options.executable.c_str(), &settings.actions, &settings.attributes,
                    nullTerminated(arguments).data(), nullTerminated(environment).data());
    if (error != 0) throw posixError("“" + options.executable.string() + "” could not be started", error);

    FileDescriptor exitSignal(pidfd_open(identifier, 0));
    if (!exitSignal.isOpen()) {
        const int reason = errno;
        kill(identifier, SIGKILL);
        reap(identifier);
        throw posixError("“" + options.executable.string() + "” could not be watched", reason);
    }
    return {identifier, std::move(exitSignal)};
}

Process::Ending Process::waitUntilExit(const WaitOptions& options) {
    Ending ending;
    bool hasExited = false;
    std::optional<Clock::time_point> deadline;
    if (options.timeout) deadline = Clock::now() + *options.timeout;

    std::vector<Stream> streams(options.streams.begin(), options.streams.end());
    while (!hasExited || !streams.empty()) {
        std::vector<pollfd> watched;
        for (const auto& stream : streams)
            watched.push_back({stream.descriptor, POLLIN, 0});
        if (!hasExited) watched.push_back({exitSignal.get(), POLLIN, 0});
        if (poll(watched.data(), watched.size(), millisecondsUntil(deadline)) < 0) continue;

        size_t index = 0;
        std::erase_if(streams, [&](const Stream& stream) {
            return watched[index++].revents != 0 && stream.read() == Stream::State::finished;
        });
        if (!hasExited && watched.back().revents != 0) {
            ending.termination = reap(identifier);
            hasExited = true;
            deadline = Clock::now() + streamGrace;
        }
        if (!deadline || Clock::now() < *deadline) continue;
        if (hasExited) break;
        kill(identifier, ending.didTimeOut ? SIGKILL : SIGTERM);
        deadline = ending.didTimeOut ? std::nullopt : std::optional(Clock::now() + killDelay);
        ending.didTimeOut = true;
    }
    return ending;
}

CollectingPipe::CollectingPipe() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) throw posixError("A pipe could not be created", errno);
    reader = FileDescriptor(ends[0]);
    writer = FileDescriptor(ends[1]);
}

Process::Stream CollectingPipe::stream() {
    return {reader.get(), [this] { return readMore(); }};
}

Process::Stream::State CollectingPipe::readMore() {
    std::array<char, 64 * 1024> buffer;
    const ssize_t count = read(reader.get(), buffer.data(), buffer.size());
    if (count < 0 && errno == EINTR) return Process::Stream::State::open;
    if (count <= 0) return Process::Stream::State::finished;
    bytes.append(buffer.data(), static_cast<size_t>(count));
    return Process::Stream::State::open;
}

}  // namespace tessel
