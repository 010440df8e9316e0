#pragma once

#include <spawn.h>

#include "platform/FileDescriptor.h"

/// What each system does in its own way when a program is started.
namespace tessel {

/// Has posix_spawn give the child no descriptor but its standard three. The flags are those of the attributes
/// so far, which the caller sets.
void keepOtherDescriptors(posix_spawn_file_actions_t& actions, short& flags);

/// A descriptor that poll(2) finds readable once the child has ended, whether or not it has already. Not open
/// when there is none to be had, for the reason in errno.
FileDescriptor openExitSignal(pid_t child);

}  // namespace tessel
