#pragma once

#include <cstdint>

/// Advice to the system on a file that is read once, from its beginning to its end. A system that can't take
/// it ignores it.
namespace tessel {

/// To be given once, before the first read.
void adviseReadingOnce(int descriptor);

/// This part is not needed again, so that the system's cache may forget it.
void adviseFinished(int descriptor, uint64_t offset, uint64_t length);

}  // namespace tessel
