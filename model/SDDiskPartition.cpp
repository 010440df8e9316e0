#include "model/SDDiskPartition.h"

#include <vector>

#include "foundation/Text.h"

namespace tessel {

std::string SDDiskPartition::displayName() const {
    std::string name = trimmed(volumeName);
    if (!name.empty()) return name;
    const std::string contentText = trimmed(content);
    return contentText.empty() ? "Unnamed Partition" : contentText;
}

std::string SDDiskPartition::detailText() const {
    const std::string contentText = trimmed(content);
    const std::string mountText = trimmed(mountPoint);
    const bool repeatsName = equalIgnoringCase(contentText, displayName());
    std::vector<std::string> details;
    if (!contentText.empty() && !repeatsName) details.push_back(contentText);
    if (!mountText.empty()) details.push_back(mountText);
    return details.empty() ? "Partition" : joined(details, " · ");
}

}  // namespace tessel
