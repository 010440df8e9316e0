#include "utilities/linux/system/HelperProcess.h"

#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>

#include "foundation/Errors.h"
#include "platform/NewDescriptors.h"

namespace tessel {

namespace {

using Clock = std::chrono::steady_clock;

[[noreturn]] void runAlone(const std::function<void(int)>& work, unsigned answers) {
    if (answers > 0) close_range(0, answers - 1, 0);
    close_range(answers + 1, UINT_MAX, 0);
    work(static_cast<int>(answers));
    _exit(0);
}

int millisecondsUntil(Clock::time_point deadline) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
    return static_cast<int>(std::clamp<int64_t>(left.count(), 0, INT_MAX));
}

}  // namespace

std::string answersOf(const std::function<void(int answers)>& work, Clock::time_point deadline) {
    DescriptorPair pipe = makePipe();
    const pid_t helper = fork();
    if (helper < 0) throw posixError("A helper process could not be started", errno);
    if (helper == 0) runAlone(work, static_cast<unsigned>(pipe.second.get()));
    pipe.second.close();

    std::string answers;
    for (;;) {
        pollfd readable{.fd = pipe.first.get(), .events = POLLIN, .revents = 0};
        const int ready = poll(&readable, 1, millisecondsUntil(deadline));
        if (ready < 0 && errno == EINTR) continue;
        if (ready <= 0) return answers;
        std::array<char, 512> bytes;
        const ssize_t count = read(pipe.first.get(), bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) break;
        answers.append(bytes.data(), static_cast<size_t>(count));
    }
    waitpid(helper, nullptr, 0);
    return answers;
}

}  // namespace tessel
