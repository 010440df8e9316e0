#pragma once

#include <filesystem>

namespace tessel {

/// The two programs through which the operating system lists, opens and ejects disks.
struct SystemUtilities {
    std::filesystem::path diskUtility;
    std::filesystem::path authorizationUtility;
};

/// Those of this computer. Nothing but the system and the place of this program chooses them.
SystemUtilities installedUtilities();

}  // namespace tessel
