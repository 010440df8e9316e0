#pragma once

#include <filesystem>

namespace tessel {

/// Names the two programs through which the operating system lists, opens and ejects disks.
struct SystemUtilities {
    std::filesystem::path diskUtility = "/usr/sbin/diskutil";
    std::filesystem::path authorizationUtility = "/usr/libexec/authopen";
};

}  // namespace tessel
