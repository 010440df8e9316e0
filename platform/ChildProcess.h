#pragma once

#include <spawn.h>

#include "platform/FileDescriptor.h"

/// The steps of starting a program that differ between systems.
namespace tessel {

/// Makes posix_spawn keep every descriptor from the child that is not explicitly given to it. Adds to the
/// flags of the attributes, which the caller then sets. Returns 0 or an error number.
[[nodiscard]] int keepOtherDescriptors(posix_spawn_file_actions_t& actions, short& flags);

/// Makes posix_spawn give the child one of this program's descriptors under the given number, which may be
/// the same. Returns 0 or an error number.
[[nodiscard]] int giveDescriptor(posix_spawn_file_actions_t& actions, int descriptor, int numberInChild);

/// Returns a descriptor that poll(2) reports as readable once the child has ended, even if it already has. If
/// none is to be had, the result is not open and errno says why.
FileDescriptor openExitSignal(pid_t child);

}  // namespace tessel
