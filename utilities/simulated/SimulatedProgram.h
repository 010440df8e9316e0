#pragma once

#include <functional>
#include <span>
#include <string>

#include "utilities/simulated/ReaderFolder.h"

namespace tessel {

/// Runs a simulated utility for the reader in whose folder the program was started. The call is logged before
/// anything else happens. Returns the exit status.
[[nodiscard]] int runSimulatedProgram(
    std::span<char*> commandLine,
    const std::function<int(const ReaderFolder& reader, std::span<const std::string> arguments)>& utility);

}  // namespace tessel
