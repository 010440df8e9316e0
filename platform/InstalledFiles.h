#pragma once

#include <filesystem>

namespace tessel {

/// The two programs through which the operating system lists, opens and ejects disks.
struct SystemUtilities {
    std::filesystem::path diskUtility;
    std::filesystem::path authorizationUtility;
};

/// Returns the utilities of this computer. Only the system and the program's own location choose them.
[[nodiscard]] SystemUtilities installedUtilities();

/// Returns the page with which the installed manual begins.
[[nodiscard]] std::filesystem::path installedManual();

}  // namespace tessel
