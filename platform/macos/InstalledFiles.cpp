#include "platform/InstalledFiles.h"

#include <mach-o/dyld.h>
#include <sys/syslimits.h>

#include <array>

namespace tessel {

SystemUtilities installedUtilities() {
    return {.diskUtility = "/usr/sbin/diskutil", .authorizationUtility = "/usr/libexec/authopen"};
}

std::filesystem::path installedManual() {
    std::array<char, PATH_MAX> executable{};
    uint32_t size = executable.size();
    if (_NSGetExecutablePath(executable.data(), &size) != 0) return {};
    return std::filesystem::path(executable.data()).parent_path().parent_path() / "Resources" / "manual" /
           "troubleshooting.md";
}

}  // namespace tessel
