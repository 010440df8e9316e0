#include "foundation/DiskIdentifier.h"

namespace tessel {

bool isWholeDiskIdentifier(std::string_view text) {
    constexpr std::string_view prefix = "disk";
    if (!text.starts_with(prefix)) return false;
    const std::string_view number = text.substr(prefix.size());
    return !number.empty() && number.find_first_not_of("0123456789") == std::string_view::npos;
}

}  // namespace tessel
