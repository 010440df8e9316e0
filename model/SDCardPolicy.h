#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "model/SDWholeDisk.h"

/// Decides which disk may be written to. Everything here is a pure function of a record, and every doubt
/// counts against the disk. Every choice of a target is checked here and nowhere else.
namespace tessel {

inline constexpr uint64_t minimumCardSize = uint64_t{1} << 29;  ///< 512 MiB, which is still accepted
inline constexpr uint64_t maximumCardSize = uint64_t{1} << 39;  ///< 512 GiB, which is still accepted

/// Returns why this disk may not be the target: the message of the first check that it fails. Returns nothing
/// only if the disk may be chosen.
std::optional<std::string> eligibilityFailureReason(const SDWholeDisk& disk);

bool usesNativeSDInterface(const SDWholeDisk& disk);
bool isRecognizedSDCard(const SDWholeDisk& disk);
bool hasFixedDriveIdentity(const SDWholeDisk& disk);
bool isConfirmedRemovableOrExternal(const SDWholeDisk& disk);

/// Returns 0 for an eligible disk, 1 for any other SD card, 2 for any other external, removable or ejectable
/// disk, 3 for the rest.
int targetPriority(const SDWholeDisk& disk);

/// Sorts by priority, then size, then identifier.
void sortForDisplay(std::vector<SDWholeDisk>& disks);

/// Reduces a name to its letters and digits, so that case, accents, widths and punctuation do not count.
std::string normalizedIdentityText(std::string_view text);

/// Returns whether both records describe the same physical disk: identifier, size, media name and bus must
/// agree.
bool isSameDisk(const SDWholeDisk& one, const SDWholeDisk& other);

}  // namespace tessel
