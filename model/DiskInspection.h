#pragma once

#include <optional>
#include <string>
#include <vector>

#include "model/SDWholeDisk.h"

namespace tessel {

/// Returns the identifier of the disk to inspect once the list has changed: the same disk while it is listed,
/// else the target if it is listed, else none.
[[nodiscard]] std::optional<std::string> reconciledInspection(const std::optional<std::string>& inspectedID,
                                                              const std::string& targetID,
                                                              const std::vector<SDWholeDisk>& listed);

}  // namespace tessel
