#pragma once

#include <optional>
#include <string>
#include <string_view>

/// The property-list library recurses once a level, expands what a binary property list shares, and searches
/// dictionaries one entry after another. These checks look at the structure alone, before the library does,
/// and are stricter than the library wherever the two could read the same bytes differently.
namespace tessel {

/// Why the library must not be given these bytes, worded to follow "it" ("is nested too deeply"); absent when
/// it may. Text that passes may still be no property list.
[[nodiscard]] std::optional<std::string> propertyListFault(std::string_view bytes);

/// Whether the bytes claim to be the binary encoding.
[[nodiscard]] bool isBinaryPropertyList(std::string_view bytes);

}  // namespace tessel
