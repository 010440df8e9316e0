#include "utilities/DiskUtility.h"

#include <algorithm>
#include <cerrno>
#include <initializer_list>
#include <ostream>
#include <string_view>

#include "foundation/Errors.h"
#include "utilities/CommandLine.h"

namespace tessel {

namespace {

constexpr std::string_view usage =
    "Usage: diskutil list -plist | info -plist /dev/diskN | unmountDisk force /dev/diskN | eject "
    "/dev/diskN\n";

ExitStatus runCommand(std::span<const std::string> arguments, DiskUtility& disks, std::ostream& output,
                      std::ostream& errors) {
    const auto begins = [&](std::initializer_list<std::string_view> words) {
        return std::ranges::equal(arguments.first(arguments.size() - 1), words);
    };
    const auto identifier = arguments.empty() ? std::nullopt : wholeDiskIn(arguments.back(), "/dev/");

    if (std::ranges::equal(arguments, std::initializer_list<std::string_view>{"list", "-plist"})) {
        output << propertyListXML(disks.list());
    } else if (identifier && begins({"info", "-plist"})) {
        output << propertyListXML(disks.info(*identifier));
    } else if (identifier && begins({"unmountDisk", "force"})) {
        disks.unmount(*identifier);
        output << "Forced unmount of all volumes on " << *identifier << " was successful\n";
    } else if (identifier && begins({"eject"})) {
        disks.eject(*identifier);
        output << "Disk /dev/" << *identifier << " ejected\n";
    } else {
        errors << usage;
        return wrongUsage;
    }
    if (!output.flush()) throw posixError("The answer could not be written", errno);
    return success;
}

}  // namespace

int runDiskUtility(std::span<const std::string> arguments, DiskUtility& disks, std::ostream& output,
                   std::ostream& errors) {
    try {
        return runCommand(arguments, disks, output, errors);
    } catch (const std::exception& error) {
        errors << error.what() << '\n';
        return failure;
    }
}

}  // namespace tessel
