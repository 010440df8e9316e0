#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Operations on Unicode text in UTF-8. They treat invalid sequences as replacement characters, never throw,
/// and may be called on any thread.
namespace tessel {

/// Removes white space and line breaks from both ends.
[[nodiscard]] std::string trimmed(std::string_view text);

/// Returns what a program printed, without white space and line breaks at both ends. Returns an empty text if
/// the bytes are not UTF-8.
[[nodiscard]] std::string trimmedOutput(std::string_view bytes);

/// Lowercases by the rules that hold in every locale.
[[nodiscard]] std::string lowercased(std::string_view text);

[[nodiscard]] bool equalIgnoringCase(std::string_view one, std::string_view other);

/// Removes combining marks and differences of width: "é" becomes "e", a full-width "A" becomes "A".
[[nodiscard]] std::string folded(std::string_view text);

/// Splits the text into its longest runs of letters, marks and numbers, and drops the rest.
[[nodiscard]] std::vector<std::string> alphanumericWords(std::string_view text);

/// Compares names in the order in which lists show them: runs of digits compare by value, so "disk2" comes
/// before "disk10", and case decides last. The order is the same in every locale. Returns a negative number,
/// zero or a positive number; different texts may compare equal, so it is fit for ordering only.
[[nodiscard]] int localizedStandardCompare(std::string_view one, std::string_view other);

/// Makes an untrusted name safe to show in a sentence or a row. Control characters, line breaks and
/// characters that change the direction of writing become replacement characters, so they can't disguise the
/// name or forge a line. A text with right-to-left letters is put between U+2068 and U+2069, so it does not
/// change the direction of the text around it. A text that is printable already, or is joined from printable
/// parts, stays as it is.
[[nodiscard]] std::string printable(std::string_view text);

/// Concatenates the texts, with the separator between them.
[[nodiscard]] std::string joined(const std::vector<std::string>& texts, std::string_view separator);

/// Returns whether the text is exactly "disk" and a number. A partition's identifier has a suffix: "disk4s1".
[[nodiscard]] bool isWholeDiskIdentifier(std::string_view text);

[[nodiscard]] bool isValidUTF8(std::string_view bytes);

}  // namespace tessel
