#pragma once

#include "rehearsal/SimulatedReader.h"

namespace tessel {

/// The disks of `addStandardMachine` that may be written to.
inline constexpr const char* usbReaderCard = "disk4";
inline constexpr const char* nativeSlotCard = "disk5";

/// Fills a reader with the disks of an ordinary computer: its system disk (disk0), a mounted disk image
/// (disk2), an SDHC card in a USB reader (disk4), an SDXC card in the computer's own slot (disk5), a USB SSD
/// (disk6) and a USB stick (disk7). Only the two cards have media.
void addStandardMachine(SimulatedReader& reader);

}  // namespace tessel
