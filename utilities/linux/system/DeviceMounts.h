#pragma once

#include "utilities/linux/Machine.h"

namespace tessel {

/// Adds to the devices where they are mounted and which of them are swap space, and tells which of them is
/// mounted at "/". Throws PlatformError when the tables can't be read: then nothing is known to be unused.
void addMountsAndSwaps(Machine& machine);

}  // namespace tessel
