#pragma once

#include "foundation/PropertyList.h"
#include "utilities/linux/DiskSnapshot.h"

namespace tessel {

/// Lists the snapshot's disks as the disk utility does.
[[nodiscard]] PropertyList::Dictionary diskListOf(const DiskSnapshot& snapshot);

/// Gives one disk's details as the disk utility does. A disk is called a card only where the kernel or
/// UDisks2 says so about the medium, or the device database about the reader.
[[nodiscard]] PropertyList::Dictionary diskDetailsOf(const DiskSnapshot& snapshot, const KernelDevice& disk);

}  // namespace tessel
