#include "model/DiskInspection.h"

#include <algorithm>

namespace tessel {

std::optional<std::string> reconciledInspection(const std::optional<std::string>& inspectedID,
                                                const std::string& targetID,
                                                const std::vector<SDWholeDisk>& listed) {
    const auto isListed = [&listed](const std::string& id) {
        return std::ranges::find(listed, id, &SDWholeDisk::id) != listed.end();
    };
    if (inspectedID && isListed(*inspectedID)) return inspectedID;
    if (isListed(targetID)) return targetID;
    return std::nullopt;
}

}  // namespace tessel
