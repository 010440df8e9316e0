#include "foundation/Text.h"

#include <gmock/gmock.h>

namespace tessel {

using testing::ElementsAre;

constexpr std::string_view brokenUTF8 = "a\xff\xc3";

TEST(TextTests, trimmingRemovesEveryKindOfWhiteSpaceAtBothEndsOnly) {
    EXPECT_EQ(trimmed(" \t\r\n\u00a0\u3000 SD  Card \u2028\n"), "SD  Card");
    EXPECT_EQ(trimmed(" \n "), "");
    EXPECT_EQ(trimmed(brokenUTF8), brokenUTF8);
}

TEST(TextTests, outputIsTrimmedAndDroppedUnlessAllOfItIsUTF8) {
    using namespace std::string_view_literals;
    const std::pair<std::string_view, std::string_view> cases[] = {
        {"\n Gerät belegt \n\n", "Gerät belegt"},
        {"a\0b"sv, "a\0b"sv},
        {"a\xffz", ""},
        {"a\0\xff"sv, ""},     // broken behind a null
        {"Ger\xc3", ""},       // cut in the middle of a character
        {"\xc0\xaf", ""},      // a slash in two bytes
        {"\xed\xa0\x80", ""},  // half of a surrogate pair
    };
    for (const auto& [bytes, text] : cases)
        EXPECT_EQ(trimmedOutput(bytes), text) << bytes;
}

TEST(TextTests, caseIsThatOfUnicodeAndOfNoLocale) {
    EXPECT_EQ(lowercased("SDXC CARD IN ÄÖ"), "sdxc card in äö");
    EXPECT_EQ(lowercased(brokenUTF8), "a\ufffd\ufffd");
    EXPECT_TRUE(equalIgnoringCase("Élan EFI", "éLAN efi"));
    EXPECT_FALSE(equalIgnoringCase("Elan", "élan"));
}

TEST(TextTests, foldingRemovesMarksAndWidthsAndNothingElse) {
    const struct {
        const char* text;
        const char* folded;
    } cases[] = {
        {"Café", "Cafe"}, {"Cafe\u0301", "Cafe"}, {"ＳＤ　Ｃａｒｄ", "SD Card"}, {"ｶﾞ", "カ"},
        {"ガ", "カ"},     {"\uffa1", "\u3131"},   {"ﬁ ² ① ß Ø", "ﬁ ² ① ß Ø"},
    };
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(folded(text), expected) << text;
}

TEST(TextTests, wordsAreRunsOfLettersMarksAndNumbers) {
    EXPECT_THAT(alphanumericWords("--Ultra_SD/ 32GB²\u00b7e\u0301ß  Ⅷ٣!"),
                ElementsAre("Ultra", "SD", "32GB²", "e\u0301ß", "Ⅷ٣"));
    EXPECT_THAT(alphanumericWords(brokenUTF8), ElementsAre("a"));
}

TEST(TextTests, whatWouldMisleadAReaderIsReplacedOrIsolated) {
    const struct {
        const char* text;
        const char* printable;
    } cases[] = {
        {"Ünïcödé 文字 💾.img", "Ünïcödé 文字 💾.img"},
        {"a\n[15:00:00]\u2028b\u202egmi.c", "a\ufffd[15:00:00]\ufffdb\ufffdgmi.c"},
        {"a\xff\xc3", "a\ufffd\ufffd"},
        {"שלום.img", "\u2068שלום.img\u2069"},
        {"Foto سلام 2", "\u2068Foto سلام 2\u2069"},
        {"𐤀", "\u2068𐤀\u2069"},
        {"٣ ۳", "٣ ۳"},
        // Direction controls have no effect once they are replaced.
        {"a\u200fb\u061c", "a\ufffdb\ufffd"},
        {"\u2068abc\u2069", "\ufffdabc\ufffd"},
        {"\u2068שלום", "\u2068\ufffdשלום\u2069"},
        {"שלום\u2069x", "\u2068שלום\ufffdx\u2069"},
        {"\u2067שלום\u2069", "\u2068\ufffdשלום\ufffd\u2069"},
        {"\u2068\u202eשלום\u2069", "\u2068\ufffd\ufffdשלום\ufffd\u2069"},
        {"\u2068a\u2068שלום\u2069", "\ufffda\u2068שלום\u2069"},
        // A sentence may hold names that are isolated already, and isolates do not nest.
        {"“\u2068שלום\u2069” and \u2068سلام\u2069\n", "“\u2068שלום\u2069” and \u2068سلام\u2069\ufffd"},
        {"\u2068שלום\u2069 سلام", "\u2068שלום سلام\u2069"},
    };
    for (const auto& [text, expected] : cases) {
        EXPECT_EQ(printable(text), expected) << text;
        EXPECT_EQ(printable(expected), expected) << text;
    }
}

TEST(TextTests, digitsCompareByValueInTheOrderOfNames) {
    const char* ascending[] = {"disk0",  "disk2",   "disk2s9", "disk2s10", "disk10",
                               "Disk10", "Element", "élément", "Zip"};
    for (size_t i = 0; i + 1 < std::size(ascending); ++i) {
        EXPECT_LT(localizedStandardCompare(ascending[i], ascending[i + 1]), 0) << ascending[i];
        EXPECT_GT(localizedStandardCompare(ascending[i + 1], ascending[i]), 0) << ascending[i];
    }
    EXPECT_EQ(localizedStandardCompare("disk4", "disk4"), 0);
}

}  // namespace tessel
