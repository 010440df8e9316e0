#pragma once

#include "utilities/linux/Machine.h"

namespace tessel {

/// Notes which devices a program has locked for itself alone, as partitioning tools and this program do while
/// they write.
void addLocks(Machine& machine);

}  // namespace tessel
