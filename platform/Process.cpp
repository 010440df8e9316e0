#include "platform/Process.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <stdexcept>
#include <utility>

#include "foundation/Errors.h"
#include "foundation/Text.h"
#include "platform/ChildProcess.h"
#include "platform/concurrency/Background.h"

/// Not every system's headers declare it.
extern char** environ;  // NOLINT(readability-redundant-declaration)

namespace tessel {

namespace {

using Clock = std::chrono::steady_clock;

/// Tells posix_spawn to give the child descriptors 0 to 2 and ordinary signal handling.
class SpawnSettings {
  public:
    /// Throws PlatformError if the system has no memory for the settings.
    explicit SpawnSettings(const Process::Outputs& outputs) : SpawnSettings() {
        short flags = POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF;
        require(posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0));
        require(giveDescriptor(actions, outputs.standardOutput, STDOUT_FILENO));
        require(giveDescriptor(actions, outputs.standardError, STDERR_FILENO));
        // Libraries may have opened descriptors that are not close-on-exec.
        require(keepOtherDescriptors(actions, flags));

        sigset_t none;
        sigemptyset(&none);
        sigset_t all;
        sigfillset(&all);
        posix_spawnattr_setsigmask(&attributes, &none);
        posix_spawnattr_setsigdefault(&attributes, &all);
        posix_spawnattr_setflags(&attributes, flags);
    }
    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;
    ~SpawnSettings() {
        posix_spawn_file_actions_destroy(&actions);
        posix_spawnattr_destroy(&attributes);
    }

    posix_spawn_file_actions_t actions{};
    posix_spawnattr_t attributes{};

  private:
    SpawnSettings() {
        posix_spawn_file_actions_init(&actions);
        posix_spawnattr_init(&attributes);
    }

    static void require(int error) {
        if (error != 0) throw posixError("No program could be started", error);
    }
};

/// Returns this program's environment with the additions, as "NAME=value" texts.
std::vector<std::string> environmentWith(const std::map<std::string, std::string>& additions) {
    std::vector<std::string> variables;
    for (char** entry = environ; entry && *entry; ++entry) {
        const std::string variable = *entry;
        if (!additions.contains(variable.substr(0, variable.find('=')))) variables.push_back(variable);
    }
    for (const auto& [name, value] : additions)
        variables.push_back(std::string(name).append("=").append(value));
    return variables;
}

std::vector<char*> nullTerminated(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (auto& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

/// Makes the system remember how children end, which it does not if this program was started with SIGCHLD
/// ignored.
void keepEndingsOfChildren() {
    struct sigaction current{};
    sigaction(SIGCHLD, nullptr, &current);
    if (current.sa_handler == SIG_IGN) signal(SIGCHLD, SIG_DFL);
}

PlatformError tooTalkative(const std::string& program) {
    const auto limit = std::to_string(Process::outputLimit >> 20) + " MiB";
    return {E2BIG, program + " was ended, because it printed more than " + limit + "."};
}

/// Waits until the child has ended and reaps it. Returns its status as waitpid(2) does.
int waitForEnd(pid_t child) {
    int status = SIGKILL;  // an unknown ending counts as a kill, never as a success
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return status;
}

/// Returns the time for poll(2), rounded up so that poll never returns just before the deadline.
int millisecondsUntil(std::optional<Clock::time_point> deadline) {
    if (!deadline) return -1;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(*deadline - Clock::now()).count();
    return static_cast<int>(std::clamp<int64_t>(left, 0, 1'000'000'000));
}

}  // namespace

Process::Process(const std::filesystem::path& executable) :
    name("“" + printable(executable.string()) + "”") {}

// Once the delegated constructor has returned, a throw runs the destructor, which ends the child.
Process::Process(const Command& command, const Outputs& outputs) : Process(command.executable) {
    std::vector<std::string> arguments{command.executable.string()};
    arguments.insert(arguments.end(), command.arguments.begin(), command.arguments.end());
    auto environment = environmentWith(command.environment);
    const SpawnSettings settings(outputs);
    keepEndingsOfChildren();

    pid_t child = 0;
    const int error = posix_spawn(&child, command.executable.c_str(), &settings.actions, &settings.attributes,
                                  nullTerminated(arguments).data(), nullTerminated(environment).data());
    if (error != 0) throw posixError(name + " could not be started", error);

    identifier = child;
    exitSignal = openExitSignal(child);
    if (!exitSignal.isOpen()) throw posixError(name + " could not be watched", errno);
}

Process::~Process() {
    if (identifier == 0) return;
    kill(identifier, SIGKILL);
    bool hasEnded = false;
    try {
        Streams none;
        hasEnded = exitSignal.isOpen() && readUntilExit(none, Clock::now() + killDelay);
    } catch (const PlatformError&) {
        hasEnded = false;  // a child that can't be watched is not waited for either
    }
    if (hasEnded)
        reap();
    else
        giveUp();
}

Process::Ending Process::waitUntilExit(const WaitOptions& options) {
    // kill(2) takes 0 for the process group of this program.
    if (identifier == 0) throw std::logic_error(name + " was waited for twice");
    Streams streams(options.streams.begin(), options.streams.end());
    std::optional<TimePoint> timeoutEnd;
    if (options.timeout) timeoutEnd = Clock::now() + *options.timeout;

    Ending ending;
    bool hasEnded = readUntilExit(streams, timeoutEnd);
    ending.didTimeOut = !hasEnded;
    for (const int signal : {SIGTERM, SIGKILL}) {
        if (hasEnded) break;
        kill(identifier, signal);
        hasEnded = readUntilExit(streams, Clock::now() + killDelay);
    }
    if (!hasEnded) {
        giveUp();
        ending.termination = {Termination::Reason::signal, SIGKILL};
        return ending;
    }
    ending.termination = reap();
    readUntilFinished(streams, Clock::now() + streamGrace);
    return ending;
}

/// Reads until the child has ended or the deadline has passed. Returns whether the child has ended.
bool Process::readUntilExit(Streams& streams, std::optional<TimePoint> deadline) const {
    for (;;) {
        if (readWhatIsThere(streams, deadline)) return true;
        if (deadline && Clock::now() >= *deadline) return false;
    }
}

void Process::readUntilFinished(Streams& streams, TimePoint deadline) const {
    while (!streams.empty() && Clock::now() < deadline)
        readWhatIsThere(streams, deadline);
}

/// Waits until there is something to read, the child ends or the deadline passes. Reads what there is, and
/// drops the streams that are finished. Returns whether the child has ended.
bool Process::readWhatIsThere(Streams& streams, std::optional<TimePoint> deadline) const {
    std::vector<pollfd> watched;
    for (const auto& stream : streams)
        watched.push_back({stream.descriptor, POLLIN, 0});
    // Once the child is reaped this is -1, which poll(2) ignores.
    watched.push_back({exitSignal.get(), POLLIN, 0});
    if (poll(watched.data(), static_cast<nfds_t>(watched.size()), millisecondsUntil(deadline)) < 0) {
        // Some systems answer EAGAIN while they are short of memory; the next call may succeed.
        if (errno == EINTR || errno == EAGAIN) return false;
        throw posixError(name + " could not be watched", errno);
    }

    size_t index = 0;
    std::erase_if(streams, [&](const Stream& stream) {
        if (watched[index++].revents == 0) return false;
        const auto state = stream.read();
        if (state == Stream::State::full) throw tooTalkative(name);
        return state == Stream::State::finished;
    });
    return watched.back().revents != 0;
}

/// Hands the killed child over to a thread of its own, which reaps it once it ends.
void Process::giveUp() {
    try {
        startThread([child = std::exchange(identifier, 0)] { waitForEnd(child); }).detach();
    } catch (const PlatformError&) {
        return;  // without a thread the child remains a zombie until this program ends
    }
}

Process::Termination Process::reap() {
    const int status = waitForEnd(std::exchange(identifier, 0));
    exitSignal.close();
    if (WIFSIGNALED(status)) return {Termination::Reason::signal, WTERMSIG(status)};
    return {Termination::Reason::exit, WEXITSTATUS(status)};
}

}  // namespace tessel
