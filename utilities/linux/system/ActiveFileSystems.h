#pragma once

#include "utilities/linux/BlockSystem.h"

namespace tessel {

/// Notes on which unmounted parts of the disk a file system is in use all the same: in a container, or after
/// a lazy unmount. The kernel may wait before it answers, even for a disk that is being unmounted; what it
/// has not answered at the deadline counts as in use. Returns whether it has answered everything.
bool noteActiveFileSystems(DiskSnapshot& snapshot, const KernelDevice& disk, BlockSystem::Time deadline);

}  // namespace tessel
