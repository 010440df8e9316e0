#include "utilities/linux/LinuxDiskUtility.h"

#include <chrono>

#include "foundation/Errors.h"
#include "utilities/linux/DiskDescriptions.h"
#include "utilities/linux/Ejection.h"
#include "utilities/linux/Unmounting.h"

namespace tessel {

namespace {

/// UDisks2 may have to ask the user before it unmounts. The program that runs the utility limits the time for
/// that.
constexpr std::chrono::hours timeToAnswer{24};

}  // namespace

PropertyList::Dictionary LinuxDiskUtility::list() {
    return diskListOf(system.read());
}

PropertyList::Dictionary LinuxDiskUtility::info(const std::string& identifier) {
    const DiskSnapshot snapshot = system.read(identifier);
    return diskDetailsOf(snapshot, listedDisk(snapshot, identifier));
}

void LinuxDiskUtility::unmount(const std::string& identifier) {
    unmountDisk(system, identifier, system.now() + timeToAnswer);
}

void LinuxDiskUtility::eject(const std::string& identifier) {
    try {
        Ejection(system, identifier).run();
    } catch (const PlatformError& error) {
        // Whatever the reason, the user must learn that the image itself has been written.
        throw PlatformError(error.code(), "The image was written, but the SD card could not be ejected. " +
                                              error.localizedDescription());
    }
}

}  // namespace tessel
