#include "utilities/Utility.h"

namespace tessel {

std::optional<std::string> wholeDiskIdentifier(std::string_view path, std::string_view prefix) {
    constexpr std::string_view disk = "disk";
    if (!path.starts_with(prefix)) return std::nullopt;
    const std::string_view identifier = path.substr(prefix.size());
    if (!identifier.starts_with(disk) || identifier.size() == disk.size()) return std::nullopt;
    if (identifier.find_first_not_of("0123456789", disk.size()) != std::string_view::npos)
        return std::nullopt;
    return std::string(identifier);
}

}  // namespace tessel
