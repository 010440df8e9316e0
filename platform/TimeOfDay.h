#pragma once

#include <string>

namespace tessel {

/// The local time as "14:03:27". To be called on the main thread.
[[nodiscard]] std::string timeOfDayText();

}  // namespace tessel
