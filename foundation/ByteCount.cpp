#include "foundation/ByteCount.h"

#include <array>
#include <string_view>

namespace tessel {

namespace {

struct Unit {
    std::string_view name;
    uint64_t bytes;
    uint64_t parts;  ///< the steps in a unit: 10 for one digit after the point, 100 for two
};

constexpr auto units = std::to_array<Unit>({
    {"KB", 1'000, 1},
    {"MB", 1'000'000, 10},
    {"GB", 1'000'000'000, 100},
    {"TB", 1'000'000'000'000, 100},
    {"PB", 1'000'000'000'000'000, 100},
    {"EB", 1'000'000'000'000'000'000, 100},
});

uint64_t roundedParts(uint64_t bytes, const Unit& unit) {
    const uint64_t part = unit.bytes / unit.parts;
    return bytes / part + (bytes % part >= part / 2 ? 1 : 0);
}

}  // namespace

std::string byteCountText(uint64_t bytes) {
    if (bytes == 0) return "Zero KB";
    if (bytes == 1) return "1 byte";
    if (bytes < 1'000) return std::to_string(bytes) + " bytes";

    const Unit* unit = units.data();
    while (roundedParts(bytes, *unit) >= 1'000 * unit->parts)
        ++unit;  // never passes the last unit, because 64 bits hold at most 18.45 EB

    const uint64_t parts = roundedParts(bytes, *unit);
    std::string text = std::to_string(parts / unit->parts);
    std::string digits = std::to_string(unit->parts + parts % unit->parts).substr(1);
    digits.erase(digits.find_last_not_of('0') + 1);
    if (!digits.empty()) text += "." + digits;
    return text.append(" ").append(unit->name);
}

}  // namespace tessel
