#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace tessel {

/// A property-list value: a text, a boolean, a whole or real number, a list, or a dictionary with text keys.
/// Dates, data and other kinds are kept as `Other`, because their contents are never needed.
class PropertyList {
  public:
    using List = std::vector<PropertyList>;
    using Dictionary = std::map<std::string, PropertyList, std::less<>>;
    struct Other {
        bool operator==(const Other&) const = default;
    };

    PropertyList() = default;
    PropertyList(bool value) : value(value) {}
    PropertyList(uint64_t value) : value(value) {}
    PropertyList(double value) : value(value) {}
    PropertyList(std::string text) : value(std::move(text)) {}
    PropertyList(const char* text) : value(std::string(text)) {}
    PropertyList(List list) : value(std::move(list)) {}
    PropertyList(Dictionary dictionary) : value(std::move(dictionary)) {}

    /// Returns the value if it is of that kind, otherwise null. So do the functions below.
    [[nodiscard]] const bool* asFlag() const { return std::get_if<bool>(&value); }
    [[nodiscard]] const uint64_t* asWholeNumber() const { return std::get_if<uint64_t>(&value); }
    [[nodiscard]] const double* asReal() const { return std::get_if<double>(&value); }
    [[nodiscard]] const std::string* asText() const { return std::get_if<std::string>(&value); }
    [[nodiscard]] const List* asList() const { return std::get_if<List>(&value); }
    [[nodiscard]] const Dictionary* asDictionary() const { return std::get_if<Dictionary>(&value); }

    bool operator==(const PropertyList&) const = default;

  private:
    std::variant<Other, bool, uint64_t, double, std::string, List, Dictionary> value;
};

/// Reads the XML or the binary encoding. Throws PlatformError of the domain "PropertyList" when the bytes are
/// not a property list, exceed 16 MiB, are nested deeper than 64 levels, or hold more than 50,000 keys and
/// values; something that the binary encoding stores once counts each time it is referred to. A whole number
/// keeps its 64 bits, so a negative one reads as 2^63 or more. Of two entries with the same key, the last one
/// counts.
[[nodiscard]] PropertyList parsePropertyList(std::string_view bytes);

/// Writes the XML encoding as UTF-8 text. Values of other kinds become empty data.
[[nodiscard]] std::string propertyListXML(const PropertyList& value);

}  // namespace tessel
