#pragma once

#include <vector>

#include "model/SDWholeDisk.h"

namespace tessel {

/// The columns by which the disk table can be sorted.
enum class DiskSortField { disk, size, media };

/// The disks that the table lists, in its order: all of them, or only physical, positively identified SD
/// cards. Disks that the field does not tell apart are ordered by identifier, whatever the direction.
[[nodiscard]] std::vector<SDWholeDisk> visibleDisks(const std::vector<SDWholeDisk>& disks, bool showAllDisks,
                                                    DiskSortField field, bool ascending);

}  // namespace tessel
