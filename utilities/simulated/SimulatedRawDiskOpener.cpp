#include "utilities/simulated/SimulatedRawDiskOpener.h"

#include <fcntl.h>
#include <linux/major.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <cerrno>

#include "foundation/Errors.h"
#include "platform/linux/BlockDescriptor.h"

namespace tessel {

namespace {

/// Returns the message of the user or the system that replaces opening.
std::string refusalText(const std::string& authorization) {
    constexpr std::pair<const char*, const char*> texts[] = {
        {"dismissed", "User canceled."},
        {"denied", "Authorization Denied"},
        {"busy", "Resource busy"},
    };
    for (const auto& [name, text] : texts)
        if (authorization == name) return text;
    return authorization;
}

bool isWriteProtected(const PropertyList::Dictionary& details) {
    const auto writable = details.find("WritableMedia");
    const bool* flag = writable == details.end() ? nullptr : writable->second.asFlag();
    return flag && !*flag;
}

FileDescriptor openMedium(const std::filesystem::path& medium, const std::string& device) {
    struct stat status{};
    if (stat(medium.c_str(), &status) != 0) throw posixError(device, errno);
    const bool isLoopDevice = S_ISBLK(status.st_mode) && major(status.st_rdev) == LOOP_MAJOR;
    if (!isLoopDevice && !S_ISREG(status.st_mode)) throw posixError(device, EPERM);

    FileDescriptor descriptor(::open(medium.c_str(), O_RDWR | O_CLOEXEC | (isLoopDevice ? O_EXCL : 0)));
    if (!descriptor.isOpen()) throw posixError(device, errno);
    if (const auto locked = lockExclusively(descriptor.get()); !locked.isSuccess())
        throw posixError(device, locked.error);
    return descriptor;
}

}  // namespace

FileDescriptor SimulatedRawDiskOpener::open(const std::string& identifier) {
    const DiskBehaviour behaviour = reader.behaviour(identifier);
    behaviour.waitBefore("authopen");
    if (!behaviour.exchangedDuringPrompt.empty()) {
        PropertyList::Dictionary details = reader.details(identifier);
        merge(details, behaviour.exchangedDuringPrompt);
        reader.setDetails(identifier, details);
    }
    if (!behaviour.authorization.empty()) throw PlatformError(1, refusalText(behaviour.authorization));

    const std::string device = "/dev/r" + identifier;
    if (isWriteProtected(reader.details(identifier))) throw posixError(device, EACCES);
    return openMedium(reader.mediumPath(identifier), device);
}

}  // namespace tessel
