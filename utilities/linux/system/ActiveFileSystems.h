#pragma once

#include "utilities/linux/BlockSystem.h"

namespace tessel {

/// Notes on which unmounted parts of the disk a file system is still in use: in a container, or after a lazy
/// unmount. The kernel may wait before it answers, even for a disk that is being unmounted; a part without an
/// answer at the deadline counts as in use. Returns whether every question was answered.
bool noteActiveFileSystems(DiskSnapshot& snapshot, const KernelDevice& disk, BlockSystem::Time deadline);

}  // namespace tessel
