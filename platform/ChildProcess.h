#pragma once

#include <spawn.h>

#include "platform/FileDescriptor.h"

/// What each system does in its own way when a program is started.
namespace tessel {

/// Has posix_spawn keep every descriptor from the child that it is not explicitly given. The flags are those
/// of the attributes so far, which the caller sets. Returns 0 or the number of an error.
[[nodiscard]] int keepOtherDescriptors(posix_spawn_file_actions_t& actions, short& flags);

/// Has posix_spawn give the child one of this program's descriptors under a number that may be its own.
/// Returns 0 or the number of an error.
[[nodiscard]] int giveDescriptor(posix_spawn_file_actions_t& actions, int descriptor, int numberInChild);

/// A descriptor that poll(2) finds readable once the child has ended, whether or not it has already. Not open
/// when there is none to be had, for the reason in errno.
FileDescriptor openExitSignal(pid_t child);

}  // namespace tessel
