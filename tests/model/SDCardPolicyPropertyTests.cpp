// The policy, compared with a second statement of its rule on random disks.

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <span>

#include "model/SDCardPolicy.h"
#include "tests/support/PropertyRecords.h"

namespace tessel {

namespace {

/// Lowercases only characters that become a letter from a to z, and leaves everything else as it is.
std::string plainlyLowered(const std::string& text) {
    std::string lowered;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text.compare(i, 3, "\u212A") == 0) {  // the sign for Kelvin
            lowered += 'k';
            i += 2;
        } else if (text.compare(i, 2, "\u0130") == 0) {  // the capital I with a dot
            lowered += "i\u0307";
            i += 1;
        } else {
            const bool isCapital = text[i] >= 'A' && text[i] <= 'Z';
            lowered += isCapital ? static_cast<char>(text[i] + 32) : text[i];
        }
    }
    return lowered;
}

std::string plainlyTrimmed(std::string text) {
    for (const char* space : {" ", "\t", "\n", "\r", "\u00A0", "\u2003", "\u2028", "\u3000"}) {
        const size_t length = std::strlen(space);
        while (text.starts_with(space))
            return plainlyTrimmed(text.substr(length));
        while (text.ends_with(space))
            return plainlyTrimmed(text.substr(0, text.size() - length));
    }
    return text;
}

bool mentions(const std::string& text, std::initializer_list<const char*> words) {
    for (const char* word : words)
        if (std::strstr(text.c_str(), word)) return true;
    return false;
}

/// Returns whether a disk may ever be written to, by a second statement of the rule.
bool mayBeWritten(const SDWholeDisk& disk) {
    const auto bus = plainlyLowered(plainlyTrimmed(disk.busProtocol));
    const auto name = plainlyLowered(plainlyTrimmed(disk.mediaName));
    const bool isNative = bus == "sd" || mentions(bus, {"secure digital", "sd/mmc"});
    const bool isCard = isNative || mentions(name, {"sdhc", "sdxc", "microsd", "micro sd", "sdcard",
                                                    "sd card", "sd memory", "sd/mmc"});
    // The words may be spread over both.
    if (mentions(bus + " " + name, {"ssd", "solid state", "nvme", "hard disk", "hard drive", "hdd", "sata",
                                    "pcie", "pci-express"}))
        return false;

    const bool comesOut = disk.isRemovable || disk.isEjectable || isNative;
    const bool isOutside = disk.isInternal == std::optional(false) ||
                           mentions(plainlyLowered(disk.deviceLocation), {"external"});
    const auto number = disk.id.starts_with("disk") ? disk.id.substr(4) : "";
    const bool isNumbered = !number.empty() && number.find_first_not_of("0123456789") == std::string::npos;
    const bool isPossible = comesOut || (isOutside && disk.isInternal != std::optional(true));
    return isCard && isPossible && isNumbered && number != "0" && disk.isWhole && disk.isPhysical &&
           disk.isWritable && disk.hasDetailedInfo && disk.sizeBytes >= 512ULL << 20 &&
           disk.sizeBytes <= 512ULL << 30;
}

/// Makes records of disks from the words of real disks and of lookalikes.
class RandomDisks {
  public:
    explicit RandomDisks(uint64_t seed) : random(seed) {}

    SDWholeDisk next() {
        static constexpr const char* names[] = {
            "SD",       "Card",      "sdhc",   "SDXC",  "micro",  "microSD",     "SD/MMC",  "Memory",
            "Reader",   "Generic",   "SSD",    "Solid", "State",  "NVMe",        "Hard",    "Disk",
            "Drive",    "HDD",       "SATA",   "PCIe",  "USB",    "PCI-Express", "ＳＤ",    "ſd",
            "S\u0301D", "Dis\u212A", "\u0130", "Карта", "カード", "s\u200Bd",    "Express", "External"};
        static constexpr const char* buses[] = {
            "USB",         "SD",  "Secure Digital", "sd/mmc",  " sd\n", "\u00A0SD\u3000", "SATA",
            "PCI-Express", "MMC", "Secure",         "Digital", "Ｓｄ",  "sd card",        "Hard",
            "Solid",       "",    "Unknown bus"};
        static constexpr const char* places[] = {"Internal", "External",       "EXTERNAL (/dev/sdb)", "",
                                                 "Unknown",  "\u0130external", "Extern\u0430l"};
        static constexpr const char* identifiers[] = {
            "disk4",  "disk0",  "disk00",     "disk",       "disk4s1",
            "rdisk4", "disk4 ", "disk\u0664", "/dev/disk4", "disk18446744073709551616"};
        static constexpr uint64_t sizes[] = {
            0,         (512ULL << 20) - 1, 512ULL << 20, 32'000'000'000, 512ULL << 30, (512ULL << 30) + 1,
            UINT64_MAX};
        SDWholeDisk disk{.id = often() ? "disk4" : oneOf<const char*>(identifiers),
                         .mediaName = words(names),
                         .sizeBytes = often() ? 32'000'000'000 : oneOf<uint64_t>(sizes),
                         .busProtocol = oneOf<const char*>(buses),
                         .deviceLocation = oneOf<const char*>(places),
                         .isWhole = often(),
                         .isRemovable = often(),
                         .isEjectable = often(),
                         .isWritable = often(),
                         .isPhysical = often(),
                         .hasDetailedInfo = often()};
        if (often()) disk.isInternal = random() % 2 == 0;
        if (!often()) disk.systemName = "/dev/sd card";
        return disk;
    }

  private:
    bool often() { return random() % 8 != 0; }

    template <typename T>
    T oneOf(std::span<const T> choices) {
        return choices[random() % choices.size()];
    }

    std::string words(std::span<const char* const> vocabulary) {
        static constexpr const char* separators[] = {" ", "", "-", "/", "\u00A0", "  ", "\n"};
        std::string text;
        for (auto count = random() % 5; count > 0; --count) {
            std::string word = oneOf<const char*>(vocabulary);
            for (auto& letter : word)
                if (letter >= 'a' && letter <= 'z' && random() % 4 == 0)
                    letter = static_cast<char>(letter - 32);
            text += word + oneOf<const char*>(separators);
        }
        return text;
    }

    std::mt19937_64 random;
};

}  // namespace

TEST(SDCardPolicyPropertyTests, exactlyTheDisksOfTheRuleAreEligible) {
    const auto records = recordsToTry(200'000);
    RandomDisks disks(20'261'123);
    uint64_t eligible = 0;
    for (uint64_t record = 0; record < records; ++record) {
        const auto disk = disks.next();
        const auto reason = eligibilityFailureReason(disk);
        eligible += reason ? 0 : 1;
        ASSERT_EQ(!reason, mayBeWritten(disk))
            << "record " << record << ": " << disk.id << " | " << disk.mediaName << " | " << disk.busProtocol
            << " | " << disk.deviceLocation << " | " << disk.sizeBytes << " | "
            << reason.value_or("eligible");
    }
    EXPECT_GT(eligible, records / 200) << "too few to tell";
    EXPECT_LT(eligible, records / 2);
}

}  // namespace tessel
