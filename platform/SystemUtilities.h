#pragma once

#include <filesystem>

namespace tessel {

/// The two programs through which the operating system lists, opens and ejects disks.
struct SystemUtilities {
    std::filesystem::path diskUtility;
    std::filesystem::path authorizationUtility;
};

/// Returns the utilities of this computer. Only the system and the program's own location choose them.
SystemUtilities installedUtilities();

}  // namespace tessel
