#include "utilities/linux/DiskDescriptions.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "foundation/Text.h"
#include "utilities/linux/DiskProtection.h"

namespace tessel {

namespace {

using Names = std::pair<std::string_view, std::string_view>;

/// Returns the name that belongs to the first part found in the text, or else `otherwise`.
template <size_t count>
std::string nameFor(std::string_view text, const std::array<Names, count>& names,
                    std::string_view otherwise) {
    for (const auto& [part, name] : names)
        if (text.find(part) != std::string_view::npos) return std::string(name);
    return std::string(otherwise);
}

/// Returns the bus, which the disk's path in the kernel's device tree shows.
std::string busOf(const KernelDevice& disk) {
    // A slot may itself be connected through USB or PCI, so it is asked about first.
    static constexpr auto buses = std::to_array<Names>({
        {"/virtual/block/", "Virtual Interface"},
        {"/usb", "USB"},
        {"/ata", "SATA"},
        {"/nvme", "PCI-Express"},
        {"/virtio", "Virtual Interface"},
    });
    if (isSDCardInSlot(disk)) return "Secure Digital";
    return isInCardSlot(disk) ? "MMC" : nameFor(disk.path, buses, "Unknown bus");
}

/// Returns the kind of medium that is positively known to be in the drive, or nothing.
std::string mediumKindOf(const DiskSnapshot& snapshot, const KernelDevice& disk) {
    static constexpr auto kinds = std::to_array<Names>({
        {"flash_sdxc", "SDXC Card"},
        {"flash_sdhc", "SDHC Card"},
        {"flash_sd", "SD Card"},
        {"flash_cf", "CompactFlash Card"},
        {"flash_ms", "Memory Stick"},
        {"flash_sm", "SmartMedia Card"},
        {"flash_mmc", "MultiMediaCard"},
        {"thumb", "USB Flash Drive"},
        {"optical", "Optical Disc"},
        {"floppy", "Floppy Disk"},
    });
    // In a native slot the kernel is more reliable: UDisks2 takes soldered flash for a card.
    if (isInCardSlot(disk)) return isSDCardInSlot(disk) ? "SD Card" : "";
    // UDisks2 may describe the last medium, or one in another reader, which says nothing about this one.
    const bool isAboutThisMedium = disk.udisks.isMediaAvailable &&
                                   disk.udisks.sequenceNumber == disk.sequenceNumber &&
                                   !sharesDrive(snapshot, disk);
    const std::string& media = disk.udisks.media;
    if (!isAboutThisMedium || media.empty() || media == "flash") return "";
    return nameFor(media, kinds, "Medium of Another Kind");
}

/// Returns whether a name mentions media other than SD and MMC cards, which have the same slots.
bool mentionsOtherMedia(const std::string& name) {
    static constexpr auto otherMedia = std::to_array<std::string_view>(
        {" cf ",           " cfast ",       " cfe ",         " cfexpress ",  " compact flash ",
         " compactflash ", " flash disk ",  " flash drive ", " m2 ",         " md ",
         " memory stick ", " memorystick ", " microdrive ",  " ms ",         " msduo ",
         " mspro ",        " nm ",          " sm ",          " smartmedia ", " sxs ",
         " ufs ",          " xd ",          " xdpicture ",   " xqd "});
    const std::string words = " " + joined(alphanumericWords(lowercased(name)), " ") + " ";
    return std::ranges::any_of(otherMedia,
                               [&](std::string_view card) { return words.find(card) != std::string::npos; });
}

/// Returns the names of the reader and the slot, without those that could be mistaken for the kind of this
/// medium: udev's hardware database names the USB device, that is, all of its slots at once, and perhaps a
/// flash drive as well.
std::vector<std::string> slotNamesOf(const KernelDevice& disk, bool isKnownAsSDCard) {
    std::vector<std::string> names{disk.udisks.vendor, disk.udisks.model};
    const std::string ownName = joined(names, " ");
    const bool takesSDCards = lowercased(ownName).find("sd") != std::string::npos;
    if (mentionsOtherMedia(ownName) && takesSDCards && !isKnownAsSDCard) return {"Multi-Card Reader"};

    if (!mentionsOtherMedia(ownName) && !mentionsOtherMedia(disk.databaseName))
        names.push_back(disk.databaseName);
    return names;
}

/// Joins the parts, and leaves out any that the name already contains.
std::string joinedName(const std::vector<std::string>& parts) {
    std::string name;
    for (const std::string& part : parts) {
        const std::string words = trimmed(printable(part));
        if (words.empty() || lowercased(name).find(lowercased(words)) != std::string::npos) continue;
        name += (name.empty() ? "" : " ") + words;
    }
    return name;
}

/// Returns a name that mentions SD cards only if this medium or this slot is known to be one. Another kind of
/// medium in a reader is named by its kind, whatever the reader calls itself.
std::string mediaNameOf(const DiskSnapshot& snapshot, const KernelDevice& disk) {
    const std::string kind = mediumKindOf(snapshot, disk);
    const bool isKnownAsSDCard = kind.starts_with("SD");
    if (!kind.empty() && !isKnownAsSDCard) return kind;
    std::vector<std::string> parts = slotNamesOf(disk, isKnownAsSDCard);
    parts.push_back(kind);
    return joinedName(parts);
}

bool isExternal(const KernelDevice& disk) {
    return busOf(disk) == "USB";
}

std::string partitionSchemeOf(const KernelDevice& disk) {
    const std::string& table = disk.udisks.partitionTable;
    if (table == "dos") return "FDisk_partition_scheme";
    return table == "gpt" ? "GUID_partition_scheme" : table;
}

PropertyList::List partitionsOf(const DiskSnapshot& snapshot, const KernelDevice& disk) {
    auto parts = partsOf(snapshot, disk);
    std::erase_if(parts, [](const KernelDevice* part) { return part->partitionNumber == 0; });

    PropertyList::List partitions;
    for (const KernelDevice* part : parts) {
        PropertyList::Dictionary entry{
            {"DeviceIdentifier", identifierOf(snapshot, disk) + "s" + std::to_string(part->partitionNumber)},
            {"Content", part->udisks.fileSystem},
            {"VolumeName", printable(part->udisks.volumeName)},
            {"Size", part->sizeBytes},
        };
        if (!part->mounts.empty()) entry["MountPoint"] = printable(part->mounts.front().target);
        partitions.emplace_back(std::move(entry));
    }
    return partitions;
}

}  // namespace

PropertyList::Dictionary diskListOf(const DiskSnapshot& snapshot) {
    PropertyList::List entries;
    for (const KernelDevice* disk : listedDisks(snapshot)) {
        entries.emplace_back(PropertyList::Dictionary{
            {"DeviceIdentifier", identifierOf(snapshot, *disk)},
            {"Content", partitionSchemeOf(*disk)},
            {"Size", disk->sizeBytes},
            {"OSInternal", !isExternal(*disk)},
            {"Partitions", partitionsOf(snapshot, *disk)},
        });
    }
    return {{"AllDisksAndPartitions", entries}};
}

PropertyList::Dictionary diskDetailsOf(const DiskSnapshot& snapshot, const KernelDevice& disk) {
    const bool isSoldered = isInCardSlot(disk) && !isSDCardInSlot(disk);
    const std::string place = isExternal(disk) ? "External" : "Internal";
    const auto protection = whyNotWritable(snapshot, disk);
    const bool isOnlyDisk = !sharesDrive(snapshot, disk);
    PropertyList::Dictionary details{
        {"DeviceIdentifier", identifierOf(snapshot, disk)},
        {"MediaName", mediaNameOf(snapshot, disk)},
        {"TotalSize", disk.sizeBytes},
        {"BusProtocol", busOf(disk)},
        // Users recognize their disks by the kernel's names.
        {"DeviceLocation", place + " (/dev/" + disk.name + ")"},
        {"Internal", !isExternal(disk)},
        {"VirtualOrPhysical", isVirtual(disk) ? "Virtual" : "Physical"},
        {"WritableMedia", !protection},
        {"WholeDisk", true},
        {"RemovableMedia", (isOnlyDisk ? disk.udisks.isMediaRemovable : disk.isRemovable) && !isSoldered},
        {"Ejectable", isOnlyDisk && disk.udisks.isEjectable && !isSoldered},
        {"VelmoraTesselSystemName", "/dev/" + disk.name},
    };
    if (protection) details["VelmoraTesselProtectionReason"] = *protection;
    return details;
}

}  // namespace tessel
