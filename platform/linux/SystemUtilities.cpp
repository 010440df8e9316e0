#include "platform/SystemUtilities.h"

namespace tessel {

SystemUtilities installedUtilities() {
    // This system has none of its own: they are installed beside this program.
    const auto executable = std::filesystem::read_symlink("/proc/self/exe");
    const auto folder = (executable.parent_path() / TESSEL_UTILITY_PATH).lexically_normal();
    return {.diskUtility = folder / "diskutil", .authorizationUtility = folder / "authopen"};
}

}  // namespace tessel
