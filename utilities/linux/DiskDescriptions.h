#pragma once

#include "foundation/PropertyList.h"
#include "utilities/linux/DiskSnapshot.h"

namespace tessel {

/// Returns the list of the snapshot's disks in the disk utility's format.
[[nodiscard]] PropertyList::Dictionary diskListOf(const DiskSnapshot& snapshot);

/// Returns one disk's details in the disk utility's format. A disk is called a card only if the kernel or
/// UDisks2 says so about the medium, or udev's hardware database about the reader.
[[nodiscard]] PropertyList::Dictionary diskDetailsOf(const DiskSnapshot& snapshot, const KernelDevice& disk);

}  // namespace tessel
