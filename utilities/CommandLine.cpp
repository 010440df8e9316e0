#include "utilities/CommandLine.h"

#include "foundation/Text.h"

namespace tessel {

std::optional<std::string> wholeDiskIn(std::string_view path, std::string_view prefix) {
    if (!path.starts_with(prefix)) return std::nullopt;
    const std::string_view identifier = path.substr(prefix.size());
    return isWholeDiskIdentifier(identifier) ? std::optional<std::string>(identifier) : std::nullopt;
}

}  // namespace tessel
