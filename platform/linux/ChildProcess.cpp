#include "platform/ChildProcess.h"

#include <unistd.h>

// The header of glibc 2.36 does not declare its functions extern "C" itself.
extern "C" {
#include <sys/pidfd.h>
}

namespace tessel {

int keepOtherDescriptors(posix_spawn_file_actions_t& actions, short&) {
    return posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
}

int giveDescriptor(posix_spawn_file_actions_t& actions, int descriptor, int numberInChild) {
    // Equal numbers are no special case here: the child's copy is then no longer close-on-exec.
    return posix_spawn_file_actions_adddup2(&actions, descriptor, numberInChild);
}

FileDescriptor openExitSignal(pid_t child) {
    return FileDescriptor(pidfd_open(child, 0));
}

}  // namespace tessel
