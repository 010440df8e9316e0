#include "foundation/Text.h"

#include <unicode/coll.h>
#include <unicode/normalizer2.h>
#include <unicode/schriter.h>
#include <unicode/uchar.h>
#include <unicode/uniset.h>
#include <unicode/unistr.h>
#include <unicode/ustring.h>

#include <memory>

namespace tessel {

namespace {

icu::UnicodeString unicode(std::string_view text) {
    return icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<int32_t>(text.size())));
}

std::string utf8(const icu::UnicodeString& text) {
    std::string result;
    return text.toUTF8String(result);
}

icu::UnicodeSet characterSet(const char16_t* pattern) {
    UErrorCode status = U_ZERO_ERROR;
    icu::UnicodeSet set(pattern, status);
    set.freeze();
    return set;
}

/// Returns the number of leading bytes whose characters are in the set or, with the opposite condition, are
/// not.
size_t span(const icu::UnicodeSet& set, std::string_view text, USetSpanCondition condition) {
    return static_cast<size_t>(set.spanUTF8(text.data(), static_cast<int32_t>(text.size()), condition));
}

icu::UnicodeString withoutWidthDifferences(const icu::UnicodeString& text) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* compatibility = icu::Normalizer2::getNFKDInstance(status);
    icu::UnicodeString result;
    icu::UnicodeString ordinary;
    for (icu::StringCharacterIterator rest(text); rest.hasNext();) {
        const UChar32 character = rest.next32PostInc();
        const int32_t kind = u_getIntPropertyValue(character, UCHAR_DECOMPOSITION_TYPE);
        const bool hasOtherWidth = kind == U_DT_WIDE || kind == U_DT_NARROW;
        if (hasOtherWidth && compatibility->getRawDecomposition(character, ordinary)) {
            result.append(ordinary);
        } else {
            result.append(character);
        }
    }
    return result;
}

icu::UnicodeString withoutMarks(const icu::UnicodeString& text) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::UnicodeString decomposed = icu::Normalizer2::getNFDInstance(status)->normalize(text, status);
    icu::UnicodeString result;
    for (icu::StringCharacterIterator rest(decomposed); rest.hasNext();) {
        const UChar32 character = rest.next32PostInc();
        if ((U_GET_GC_MASK(character) & U_GC_M_MASK) == 0) result.append(character);
    }
    return result;
}

constexpr char16_t isolateBegin = u'\u2068';  ///< gives a part of a text its own direction
constexpr char16_t isolateEnd = u'\u2069';

const icu::UnicodeSet& unprintable() {
    static const icu::UnicodeSet set = characterSet(u"[[:Cc:][:Zl:][:Zp:][:Bidi_Control:]]");
    return set;
}

const icu::UnicodeSet& rightToLeft() {
    static const icu::UnicodeSet set = characterSet(u"[[:Bidi_Class=R:][:Bidi_Class=AL:]-[:Bidi_Control:]]");
    return set;
}

/// Returns the length of the isolate that begins there, or 0 if there is none that printable() could have
/// made.
int32_t isolateLength(const icu::UnicodeString& text, int32_t begin) {
    if (text[begin] != isolateBegin) return 0;
    const int32_t end = text.indexOf(isolateEnd, begin);
    if (end < 0) return 0;
    const auto content = text.tempSubStringBetween(begin + 1, end);
    const bool isOurs = unprintable().containsNone(content) && rightToLeft().containsSome(content);
    return isOurs ? end + 1 - begin : 0;
}

std::unique_ptr<const icu::Collator> numericCollator() {
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::Collator> collator(icu::Collator::createInstance(icu::Locale::getRoot(), status));
    collator->setAttribute(UCOL_NUMERIC_COLLATION, UCOL_ON, status);
    return collator;
}

}  // namespace

std::string trimmed(std::string_view text) {
    static const icu::UnicodeSet whiteSpace = characterSet(u"[:White_Space:]");
    text.remove_prefix(span(whiteSpace, text, USET_SPAN_SIMPLE));
    const int32_t end =
        whiteSpace.spanBackUTF8(text.data(), static_cast<int32_t>(text.size()), USET_SPAN_SIMPLE);
    return std::string(text.substr(0, static_cast<size_t>(end)));
}

std::string trimmedOutput(std::string_view bytes) {
    return isValidUTF8(bytes) ? trimmed(bytes) : std::string();
}

std::string lowercased(std::string_view text) {
    return utf8(unicode(text).toLower(icu::Locale::getRoot()));
}

bool equalIgnoringCase(std::string_view one, std::string_view other) {
    return unicode(one).caseCompare(unicode(other), U_FOLD_CASE_DEFAULT) == 0;
}

std::string folded(std::string_view text) {
    // Widths come first, because half-width voicing marks become combining marks.
    return utf8(withoutMarks(withoutWidthDifferences(unicode(text))));
}

std::vector<std::string> alphanumericWords(std::string_view text) {
    static const icu::UnicodeSet alphanumeric = characterSet(u"[[:L:][:M:][:N:]]");
    std::vector<std::string> words;
    while (true) {
        text.remove_prefix(span(alphanumeric, text, USET_SPAN_NOT_CONTAINED));
        if (text.empty()) return words;
        const size_t length = span(alphanumeric, text, USET_SPAN_SIMPLE);
        words.emplace_back(text.substr(0, length));
        text.remove_prefix(length);
    }
}

int localizedStandardCompare(std::string_view one, std::string_view other) {
    static const std::unique_ptr<const icu::Collator> collator = numericCollator();
    return collator->compare(unicode(one), unicode(other));
}

std::string printable(std::string_view text) {
    const icu::UnicodeString whole = unicode(text);
    icu::UnicodeString result;
    bool turnsAround = false;
    for (int32_t position = 0; position < whole.length();) {
        const int32_t isolate = isolateLength(whole, position);
        if (isolate > 0) {
            result.append(whole, position, isolate);
            position += isolate;
            continue;
        }
        const UChar32 character = whole.char32At(position);
        turnsAround = turnsAround || rightToLeft().contains(character);
        result.append(unprintable().contains(character) ? UChar32{0xfffd} : character);
        position += U16_LENGTH(character);
    }
    if (!turnsAround) return utf8(result);

    // A single isolate around everything replaces those within.
    result.findAndReplace(isolateBegin, {});
    result.findAndReplace(isolateEnd, {});
    return utf8(result.insert(0, isolateBegin).append(isolateEnd));
}

std::string joined(const std::vector<std::string>& texts, std::string_view separator) {
    std::string result;
    for (const std::string& text : texts) {
        if (&text != &texts.front()) result += separator;
        result += text;
    }
    return result;
}

bool isValidUTF8(std::string_view bytes) {
    UErrorCode status = U_ZERO_ERROR;
    int32_t length = 0;
    u_strFromUTF8(nullptr, 0, &length, bytes.data(), static_cast<int32_t>(bytes.size()), &status);
    return status != U_INVALID_CHAR_FOUND;
}

bool isWholeDiskIdentifier(std::string_view text) {
    constexpr std::string_view prefix = "disk";
    if (!text.starts_with(prefix)) return false;
    const std::string_view number = text.substr(prefix.size());
    return !number.empty() && number.find_first_not_of("0123456789") == std::string_view::npos;
}

}  // namespace tessel
