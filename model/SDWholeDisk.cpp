#include "model/SDWholeDisk.h"

#include "foundation/ByteCount.h"
#include "foundation/Text.h"

namespace tessel {

std::string SDWholeDisk::displaySummary() const {
    return joined({mediaName, sizeOrUnknown(sizeBytes), id}, " · ");
}

std::string SDWholeDisk::locationText() const {
    std::string reported = trimmed(deviceLocation);
    if (!reported.empty()) return reported;
    if (!isInternal) return "Unknown location";
    return *isInternal ? "Internal" : "External";
}

std::string SDWholeDisk::partitionSchemeText() const {
    const std::string scheme = trimmed(partitionScheme);
    return scheme.empty() ? "Unknown partition map" : scheme;
}

std::string SDWholeDisk::capabilitySummary() const {
    std::vector<std::string> capabilities = {
        locationText(),
        isPhysical ? "Physical" : "Virtual or unavailable",
        isWritable ? "Writable" : "Read-only or unknown",
    };
    if (isRemovable) capabilities.emplace_back("Removable");
    if (isEjectable) capabilities.emplace_back("Ejectable");
    if (!hasDetailedInfo) capabilities.emplace_back("Details unavailable");
    return joined(capabilities, " · ");
}

std::string SDWholeDisk::partitionCountText() const {
    if (partitions.empty()) return "No partitions reported";
    return std::to_string(partitions.size()) + (partitions.size() == 1 ? " partition" : " partitions");
}

std::string sizeOrUnknown(uint64_t bytes) {
    return bytes == 0 ? "Unknown size" : byteCountText(bytes);
}

std::string devicePath(const std::string& identifier) {
    return "/dev/" + identifier;
}

std::string rawDevicePath(const std::string& identifier) {
    return "/dev/r" + identifier;
}

}  // namespace tessel
