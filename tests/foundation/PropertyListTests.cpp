#include "foundation/PropertyList.h"

#include <gmock/gmock.h>

#include "foundation/Errors.h"
#include "foundation/PropertyListGuard.h"

namespace tessel {

namespace {

std::string repeated(std::string_view text, size_t times) {
    std::string result;
    for (size_t time = 0; time < times; ++time)
        result += text;
    return result;
}

std::string xml(const std::string& value) {
    return R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">)" +
           value + "</plist>\n";
}

/// Encodes the objects with one-byte references and two-byte offsets.
std::string binary(const std::vector<std::string>& objects, char root = 0) {
    std::string bytes = "bplist00";
    std::string offsets;
    for (const std::string& object : objects) {
        offsets += {static_cast<char>(bytes.size() >> 8), static_cast<char>(bytes.size())};
        bytes += object;
    }
    const size_t table = bytes.size();
    bytes += offsets + std::string(6, '\0') + "\x02\x01" + std::string(6, '\0');
    bytes += {static_cast<char>(objects.size() >> 8), static_cast<char>(objects.size())};
    bytes += std::string(7, '\0') + root + std::string(6, '\0');
    bytes += {static_cast<char>(table >> 8), static_cast<char>(table)};
    return bytes;
}

/// Makes a chain of lists, each of which refers to the next object that many times.
std::vector<std::string> listsOfTheNext(size_t levels, char references) {
    std::vector<std::string> objects;
    for (size_t level = 1; level <= levels; ++level)
        objects.push_back(static_cast<char>(0xA0 | references) +
                          std::string(static_cast<size_t>(references), static_cast<char>(level)));
    objects.push_back("\x09");
    return objects;
}

}  // namespace

TEST(PropertyListTests, everyKindIsReadFromXML) {
    const PropertyList value = parsePropertyList(xml(R"(<dict>
        <key>text</key><string>B&amp;W &#x2713; <![CDATA[</dict>]]><![CDATA[]]></string>
        <!-- </dict> --><!-- --><key>flags</key><array><true/><false/></array>
        <key>whole</key><integer>64021856256</integer><key>negative</key><integer>-1</integer>
        <key>real</key><real>0.25</real><key>empty</key><dict/>
        <key>date</key><date>2024-05-01T10:00:00Z</date><key>data</key><data>AAEC</data></dict>)"));
    EXPECT_EQ(value, (PropertyList::Dictionary{
                         {"text", "B&W ✓ </dict>"},
                         {"flags", PropertyList::List{true, false}},
                         {"whole", uint64_t{64021856256}},
                         {"negative", UINT64_MAX},
                         {"real", 0.25},
                         {"empty", PropertyList::Dictionary{}},
                         {"date", PropertyList()},
                         {"data", PropertyList()},
                     }));
    EXPECT_THAT(propertyListXML(PropertyList()), testing::HasSubstr("<data>\n</data>")) << "any other kind";
}

TEST(PropertyListTests, theBinaryEncodingIsRead) {
    const auto list = std::string("\xA2\x05\x00", 3);
    EXPECT_EQ(
        parsePropertyList(binary({"\x08", "\xD2\x05\x03\x02\x04", std::string("\x12\x3B\x9A\xCA\x00", 5),
                                  "\x61\x26\x3A", list, "\x5F\x10\x11SeventeenLetters!"},
                                 1)),
        (PropertyList::Dictionary{
            {"SeventeenLetters!", uint64_t{1'000'000'000}},
            {"☺", PropertyList::List{"SeventeenLetters!", false}},
        }));
}

TEST(PropertyListTests, sixtyFourLevelsAreReadAndNotOneMore) {
    const auto deepest = xml(repeated("<array>", 64) + repeated("</array>", 64));
    EXPECT_NO_THROW(static_cast<void>(parsePropertyList(deepest)));
    EXPECT_NO_THROW(static_cast<void>(parsePropertyList(binary(listsOfTheNext(63, 1)))));
    EXPECT_EQ(propertyListFault(repeated("<array>", 65)), "is nested too deeply");
    EXPECT_EQ(propertyListFault(repeated("<array></array>", 100)), std::nullopt);
    EXPECT_EQ(propertyListFault("</array>" + repeated("<array>", 65)), "is nested too deeply");
    EXPECT_EQ(propertyListFault("<array></array>" + repeated("<array>", 64)), std::nullopt);
    EXPECT_EQ(propertyListFault(binary(listsOfTheNext(64, 1))), "is nested too deeply");
}

TEST(PropertyListTests, whatIsMalformedNeverReachesTheLibrary) {
    EXPECT_EQ(propertyListFault("<?\?><!-- <[--><a>"), std::nullopt);
    EXPECT_EQ(propertyListFault("<?>"), "is malformed");
    const auto changed = [](std::string bytes, size_t fromEnd, char value) {
        bytes[bytes.size() - fromEnd] = value;
        return bytes;
    };
    constexpr size_t offset = 33, offsetSize = 26, referenceSize = 25, objectCount = 17;
    const std::pair<const char*, std::string> cases[] = {
        {"fewer offsets than objects", changed(binary({"\x08"}), objectCount, 2)},
        {"fewer objects than offsets", changed(binary({"\x08", "\x08"}, 1), objectCount, 1)},
        {"offsets of no bytes", changed(binary({"\x08"}), offsetSize, 0)},
        {"references of nine bytes",
         changed(binary({std::string("\xA1\0\0\0\0\0\0\0\0\1", 10), "\x08"}), referenceSize, 9)},
        {"the second of two references",
         changed(binary({std::string("\xA2\0\1\0\7", 5), "\x08"}), referenceSize, 2)},
        {"the second of two values", binary({"\xD2\1\1\1\7", "\x51\x61"})},
        // Here the last byte, which says that the offsets begin at 0xA1, is a list of one.
        {"a list at the very end",
         changed(binary({std::string(0xA1 - 8, '\x08')}), offset, static_cast<char>(0xA1 + 2 + 31))},
    };
    for (const auto& [what, bytes] : cases)
        EXPECT_EQ(propertyListFault(bytes), "is malformed") << what;
}

TEST(PropertyListTests, hostileBytesEndInOneSentence) {
    const std::string manyLevels = repeated("<array>", 1'000'000);
    std::vector<std::pair<const char*, std::string>> hostile = {
        {"nothing", ""},
        {"no property list", "disk4: not found"},
        {"no value", xml("")},
        {"no end", "<plist><dict><key>a"},
        {"no trailer", binary({}).substr(0, 39)},
        {"unknown element", xml("<a/>")},
        {"deep", xml(manyLevels)},
        {"deep behind a closing tag in a comment", xml(repeated("<array><!-- </array> -->", 100'000))},
        {"deep behind a quoted closing tag", xml(repeated("<array a=\"</array>\">", 100'000))},
        {"deep behind a comment in an instruction", "<? \" ?><!-- \" ?>" + manyLevels + "-->"},
        {"deep behind a comment in a document type", "<!DOCTYPE a [ > <!-- ]>" + manyLevels + "-->"},
        {"deep behind a zero byte", xml(repeated(std::string_view("<array\0>", 8), 100'000))},
        {"many values", xml("<array>" + repeated("<true/>", 60'000) + "</array>")},
        {"too large", xml("<string>" + std::string(size_t{17} << 20, 'a') + "</string>")},
        {"binary without objects", binary({})},
        {"binary list that holds itself", binary({std::string("\xA1\x00", 2)})},
        {"binary lists that hold each other", binary({"\xA1\x01", std::string("\xA1\x00", 2)})},
        {"binary list that doubles at each level", binary(listsOfTheNext(60, 2))},
        {"binary text without end", binary({"\x5F\x13\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"})},
        {"binary key with a zero character", binary({"\xD1\x01\x01", std::string("\x62\0a\0\0", 5)})},
        {"binary text with a zero character", binary({std::string("\x53\x61\0b", 4)})},
        {"binary text that begins with a zero character", binary({std::string("\x52\0a", 3)})},
    };
    for (const char* marker : {"\x4F\x11\x27\x10", "\x5F\x11\x27\x10"})
        hostile.emplace_back(
            "binary value shared very often",
            binary({"\xA1\x01", "\xAF\x10\x64" + std::string(100, '\x02'),
                    "\xAF\x10\x64" + std::string(100, '\x03'), marker + std::string(10'000, 'a')}));

    for (const auto& [name, bytes] : hostile) {
        try {
            static_cast<void>(parsePropertyList(bytes));
            ADD_FAILURE() << name << " was read";
        } catch (const PlatformError& error) {
            EXPECT_THAT(error.localizedDescription(),
                        testing::MatchesRegex("The property list could not be read: it is [a-z ]+\\."))
                << name;
        }
    }
}

}  // namespace tessel
