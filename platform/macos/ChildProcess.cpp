#include "platform/ChildProcess.h"

#include <sys/event.h>

#include <cerrno>
#include <utility>

#include "foundation/Errors.h"
#include "platform/NewDescriptors.h"

namespace tessel {

namespace {

/// Returns the reading end of a pipe whose other end is closed, so it always has an end-of-file to be read.
FileDescriptor readableForEver() {
    try {
        return std::move(makePipe().first);
    } catch (const PlatformError& error) {
        errno = error.code();
        return {};
    }
}

}  // namespace

int keepOtherDescriptors(posix_spawn_file_actions_t&, short& flags) {
    flags |= POSIX_SPAWN_CLOEXEC_DEFAULT;
    return 0;
}

int giveDescriptor(posix_spawn_file_actions_t& actions, int descriptor, int numberInChild) {
    // Not every version copies a descriptor onto itself.
    if (descriptor == numberInChild) return posix_spawn_file_actions_addinherit_np(&actions, descriptor);
    return posix_spawn_file_actions_adddup2(&actions, descriptor, numberInChild);
}

FileDescriptor openExitSignal(pid_t child) {
    FileDescriptor queue(kqueue());
    struct kevent exit{};
    EV_SET(&exit, child, EVFILT_PROC, EV_ADD, NOTE_EXIT, 0, nullptr);
    if (queue.isOpen() && kevent(queue.get(), &exit, 1, nullptr, 0, nullptr) == 0) return queue;
    // The queue does not know a child that has already ended, although it still has to be waited for.
    if (queue.isOpen() && errno == ESRCH) return readableForEver();
    return {};
}

}  // namespace tessel
