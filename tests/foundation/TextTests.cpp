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

TEST(TextTests, whatWouldMisleadAReaderIsReplaced) {
    EXPECT_EQ(printable("Ünïcödé 文字 שלום 💾.img"), "Ünïcödé 文字 שלום 💾.img");
    EXPECT_EQ(printable("a\n[15:00:00]\u2028b\u202egmi.c"), "a\ufffd[15:00:00]\ufffdb\ufffdgmi.c");
    EXPECT_EQ(printable(brokenUTF8), "a\ufffd\ufffd");
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
