#pragma once

#include <vector>

#include "model/SDWholeDisk.h"

namespace tessel {

/// Names the column by which the disk table is sorted.
enum class DiskSortField { disk, size, media };

/// Returns the disks that the table lists, in its order: all of them, or only physical media that are
/// positively identified as SD cards. Disks that the field does not tell apart are ordered by identifier,
/// whatever the direction.
[[nodiscard]] std::vector<SDWholeDisk> visibleDisks(const std::vector<SDWholeDisk>& disks, bool showAllDisks,
                                                    DiskSortField field, bool ascending);

}  // namespace tessel
