#pragma once

#include <optional>
#include <string>
#include <string_view>

/// The property-list library recurses once per level, expands whatever a binary property list shares, and
/// searches dictionaries one entry after another, so hostile bytes could exhaust the stack, the memory or the
/// user's patience. These checks look at the structure before the library does, and are stricter than the
/// library wherever the two might read the same bytes differently.
namespace tessel {

/// Returns why the library must not be given these bytes, phrased to follow "it" ("is nested too deeply"), or
/// nothing if it may parse them. They may still turn out not to be a property list.
[[nodiscard]] std::optional<std::string> propertyListFault(std::string_view bytes);

/// Returns whether the bytes claim to be the binary encoding.
[[nodiscard]] bool isBinaryPropertyList(std::string_view bytes);

}  // namespace tessel
