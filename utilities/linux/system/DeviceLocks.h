#pragma once

#include "utilities/linux/Machine.h"

namespace tessel {

/// Tells of the devices which of them a program has locked for itself alone, as partitioning tools and this
/// program do while they write.
void addLocks(Machine& machine);

}  // namespace tessel
