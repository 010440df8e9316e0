#pragma once

#include <optional>
#include <span>

namespace tessel {

/// Prints what the arguments ask for, and returns the exit status; returns nothing if the window is to open.
/// Needs no display.
[[nodiscard]] std::optional<int> answerCommandLine(std::span<char* const> arguments);

}  // namespace tessel
