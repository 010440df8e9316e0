#include "platform/SystemUtilities.h"

namespace tessel {

SystemUtilities installedUtilities() {
    return {.diskUtility = "/usr/sbin/diskutil", .authorizationUtility = "/usr/libexec/authopen"};
}

}  // namespace tessel
