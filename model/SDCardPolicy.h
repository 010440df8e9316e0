#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "model/SDWholeDisk.h"

/// Which disk may be written to. Everything here is a pure function of a record, and every doubt counts
/// against the disk. Whoever decides about a target asks here and nowhere else.
namespace tessel {

inline constexpr uint64_t minimumCardSize = uint64_t{1} << 29;  ///< 512 MiB, accepted
inline constexpr uint64_t maximumCardSize = uint64_t{1} << 39;  ///< 512 GiB, accepted

/// Why this disk may not be the target: the message of the first check that it fails. Absent exactly when the
/// disk may be chosen.
std::optional<std::string> eligibilityFailureReason(const SDWholeDisk& disk);

bool usesNativeSDInterface(const SDWholeDisk& disk);
bool isRecognizedSDCard(const SDWholeDisk& disk);
bool hasFixedDriveIdentity(const SDWholeDisk& disk);
bool isConfirmedRemovableOrExternal(const SDWholeDisk& disk);

/// 0 for an eligible disk, 1 for another SD card, 2 for other movable disks, 3 for the rest.
int targetPriority(const SDWholeDisk& disk);

/// Sorts by priority, then size, then identifier.
void sortForDisplay(std::vector<SDWholeDisk>& disks);

/// The letters and digits of a name, without case, accents, widths and punctuation.
std::string normalizedIdentityText(std::string_view text);

/// Whether both records describe the same physical disk: identifier, size, media name and bus agree.
bool isSameDisk(const SDWholeDisk& one, const SDWholeDisk& other);

}  // namespace tessel
