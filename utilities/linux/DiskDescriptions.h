#pragma once

#include "foundation/PropertyList.h"
#include "utilities/linux/Machine.h"

namespace tessel {

/// The machine's disks as the disk utility lists them.
[[nodiscard]] PropertyList::Dictionary diskListOf(const Machine& machine);

/// One disk's details as the disk utility gives them. A card is called one only where the kernel or UDisks2
/// says so about the medium, or the device database about the reader.
[[nodiscard]] PropertyList::Dictionary diskDetailsOf(const Machine& machine, const BlockDevice& disk);

}  // namespace tessel
