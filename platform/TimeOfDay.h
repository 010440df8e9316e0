#pragma once

#include <string>

namespace tessel {

/// Returns the local time as "14:03:27". Called on the main thread only.
[[nodiscard]] std::string timeOfDayText();

}  // namespace tessel
