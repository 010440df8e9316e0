#pragma once

#include <optional>
#include <string>
#include <vector>

#include "model/SDWholeDisk.h"

namespace tessel {

/// The column by which the disk table is sorted.
enum class DiskSortField { disk, size, media };

/// Returns the disks that the table lists, in its order: all of them, or only physical media that are
/// positively identified as SD cards. Disks that compare equal are ordered by identifier, whatever the
/// direction.
[[nodiscard]] std::vector<SDWholeDisk> visibleDisks(const std::vector<SDWholeDisk>& disks, bool showAllDisks,
                                                    DiskSortField field, bool ascending);

/// Returns the identifier of the disk to inspect once the list has changed: the same disk while it is listed,
/// else the target if it is listed, else none.
[[nodiscard]] std::optional<std::string> reconciledInspection(const std::optional<std::string>& inspectedID,
                                                              const std::string& targetID,
                                                              const std::vector<SDWholeDisk>& listed);

}  // namespace tessel
