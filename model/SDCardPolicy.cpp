#include "model/SDCardPolicy.h"

#include <algorithm>
#include <array>
#include <span>

#include "foundation/Text.h"
#include "model/SystemWords.h"

namespace tessel {

namespace {

constexpr auto sdCardKeywords = std::to_array<std::string_view>({
    "sd/mmc",
    "sd card",
    "sdcard",
    "sd memory",
    "micro sd",
    "microsd",
    "sdhc",
    "sdxc",
});

constexpr auto fixedDriveKeywords = std::to_array<std::string_view>({
    "ssd",
    "solid state",
    "nvme",
    "hard disk",
    "hard drive",
    "hdd",
    "sata",
    "pci-express",
    "pcie",
});

struct Check {
    bool (*fails)(const SDWholeDisk& disk);
    std::string_view message;
};

/// The order counts: a disk is refused for the first check that it fails.
const auto checks = std::to_array<Check>({
    {[](const SDWholeDisk& disk) { return !disk.hasDetailedInfo; },
     "Detailed disk information could not be read."},

    {[](const SDWholeDisk& disk) { return !isWholeDiskIdentifier(disk.id); },
     "The item is not a whole-disk identifier."},

    {[](const SDWholeDisk& disk) { return disk.id == "disk0"; }, "disk0 is always protected."},

    {[](const SDWholeDisk& disk) { return !disk.isWhole; },
     "The item is a partition rather than a whole disk."},

    {[](const SDWholeDisk& disk) { return !disk.isPhysical; },
     "The disk is virtual or synthesized rather than physical media."},

    {hasFixedDriveIdentity,
     "The media identity indicates an SSD, hard drive, NVMe device, or other fixed-drive class."},

    {[](const SDWholeDisk& disk) { return !isRecognizedSDCard(disk); },
     "The media name or bus protocol does not explicitly identify this device as an SD, SDHC, SDXC, microSD, "
     "or SD/MMC card."},

    {[](const SDWholeDisk& disk) { return !disk.isWritable; }, systemWords().cardNotWritable},

    {[](const SDWholeDisk& disk) { return disk.sizeBytes < minimumCardSize; },
     "The SD card is smaller than 512 MB."},

    {[](const SDWholeDisk& disk) { return disk.sizeBytes > maximumCardSize; },
     "The SD card is larger than the current 512 GB safety limit."},

    {[](const SDWholeDisk& disk) {
         return disk.isInternal == true && !disk.isRemovable && !disk.isEjectable &&
                !usesNativeSDInterface(disk);
     },
     "The disk is internal fixed media rather than removable SD media."},

    {[](const SDWholeDisk& disk) { return !isConfirmedRemovableOrExternal(disk); },
     "The SD card is not confirmed as external, removable, ejectable, or connected through a native SD "
     "interface."},
});

std::string keywordText(std::string_view reported) {
    return lowercased(trimmed(reported));
}

bool contains(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

bool containsAny(std::string_view text, std::span<const std::string_view> keywords) {
    return std::ranges::any_of(keywords,
                               [text](std::string_view keyword) { return contains(text, keyword); });
}

}  // namespace

std::optional<std::string> eligibilityFailureReason(const SDWholeDisk& disk) {
    for (const Check& check : checks) {
        if (check.fails(disk)) return std::string(check.message);
    }
    return std::nullopt;
}

bool usesNativeSDInterface(const SDWholeDisk& disk) {
    const std::string bus = keywordText(disk.busProtocol);
    return bus == "sd" || contains(bus, "secure digital") || contains(bus, "sd/mmc");
}

bool isRecognizedSDCard(const SDWholeDisk& disk) {
    return usesNativeSDInterface(disk) || containsAny(keywordText(disk.mediaName), sdCardKeywords);
}

bool hasFixedDriveIdentity(const SDWholeDisk& disk) {
    return containsAny(keywordText(disk.busProtocol) + " " + keywordText(disk.mediaName), fixedDriveKeywords);
}

bool isConfirmedRemovableOrExternal(const SDWholeDisk& disk) {
    return disk.isInternal == false || contains(keywordText(disk.deviceLocation), "external") ||
           disk.isRemovable || disk.isEjectable || usesNativeSDInterface(disk);
}

int targetPriority(const SDWholeDisk& disk) {
    if (!eligibilityFailureReason(disk)) return 0;
    if (isRecognizedSDCard(disk)) return 1;
    if (disk.isInternal == false || disk.isRemovable || disk.isEjectable) return 2;
    return 3;
}

void sortForDisplay(std::vector<SDWholeDisk>& disks) {
    std::ranges::stable_sort(disks, [](const SDWholeDisk& one, const SDWholeDisk& other) {
        const int onePriority = targetPriority(one);
        const int otherPriority = targetPriority(other);
        if (onePriority != otherPriority) return onePriority < otherPriority;
        if (one.sizeBytes != other.sizeBytes) return one.sizeBytes < other.sizeBytes;
        return localizedStandardCompare(one.id, other.id) < 0;
    });
}

std::string normalizedIdentityText(std::string_view text) {
    return joined(alphanumericWords(lowercased(folded(text))), " ");
}

bool isSameDisk(const SDWholeDisk& one, const SDWholeDisk& other) {
    return one.id == other.id && one.sizeBytes == other.sizeBytes &&
           normalizedIdentityText(one.mediaName) == normalizedIdentityText(other.mediaName) &&
           normalizedIdentityText(one.busProtocol) == normalizedIdentityText(other.busProtocol);
}

}  // namespace tessel
