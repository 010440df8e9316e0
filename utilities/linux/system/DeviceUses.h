#pragma once

#include "utilities/linux/Machine.h"

struct libmnt_table;

namespace tessel {

/// Notes where the devices are mounted, which of them are swap space or otherwise in use, and which one is
/// mounted at "/". Throws PlatformError when the tables can't be read, since no device is then known to be
/// unused.
void addUses(Machine& machine);

/// Notes only what these two tables say.
void addUses(Machine& machine, libmnt_table* mounts, libmnt_table* swaps);

}  // namespace tessel
