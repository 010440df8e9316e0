#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Unicode text operations over UTF-8. Invalid sequences are treated as replacement characters; nothing here
/// throws. All functions may be called on any thread.
namespace tessel {

/// Without leading and trailing white space and line breaks.
[[nodiscard]] std::string trimmed(std::string_view text);

/// Lowercased by the locale-independent rules.
[[nodiscard]] std::string lowercased(std::string_view text);

/// Whether both texts are equal when case is ignored.
[[nodiscard]] bool equalIgnoringCase(std::string_view one, std::string_view other);

/// Without combining marks and without differences of width ("é" to "e", a full-width "A" to "A").
[[nodiscard]] std::string folded(std::string_view text);

/// The maximal runs of letters, marks and numbers.
[[nodiscard]] std::vector<std::string> alphanumericWords(std::string_view text);

/// The order in which a person expects names to be listed: runs of digits compare by value, so "disk2" comes
/// before "disk10", and case decides last. The same in every locale. Negative, zero or positive. Only for
/// ordering: different texts may compare equal.
[[nodiscard]] int localizedStandardCompare(std::string_view one, std::string_view other);

/// For names that others chose: control characters, line breaks, and what changes the direction of writing
/// become replacement characters, so that nobody reads another name, or another line.
[[nodiscard]] std::string printable(std::string_view text);

/// The texts with the separator between them.
[[nodiscard]] std::string joined(const std::vector<std::string>& texts, std::string_view separator);

/// Whether the bytes are well-formed UTF-8.
[[nodiscard]] bool isValidUTF8(std::string_view bytes);

}  // namespace tessel
