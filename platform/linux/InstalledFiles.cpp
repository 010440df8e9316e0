#include "platform/InstalledFiles.h"

namespace tessel {

namespace {

/// Returns a path that was given from the program's own folder.
std::filesystem::path installed(const char* path) {
    const auto executable = std::filesystem::read_symlink("/proc/self/exe");
    return (executable.parent_path() / path).lexically_normal();
}

}  // namespace

SystemUtilities installedUtilities() {
    // This system has none of its own: they are installed beside this program.
    const auto folder = installed(TESSEL_UTILITY_PATH);
    return {.diskUtility = folder / "diskutil", .authorizationUtility = folder / "authopen"};
}

std::filesystem::path installedManual() {
    return installed(TESSEL_MANUAL_PATH);
}

}  // namespace tessel
