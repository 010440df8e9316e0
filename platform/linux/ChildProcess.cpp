#include "platform/ChildProcess.h"

#include <unistd.h>

// The header of glibc 2.36 does not declare its functions extern "C" itself.
extern "C" {
#include <sys/pidfd.h>
}

namespace tessel {

void keepOtherDescriptors(posix_spawn_file_actions_t& actions, short&) {
    posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
}

FileDescriptor openExitSignal(pid_t child) {
    return FileDescriptor(pidfd_open(child, 0));
}

}  // namespace tessel
