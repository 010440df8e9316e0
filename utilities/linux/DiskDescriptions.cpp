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

/// Returns the name that belongs to the first part that occurs in the text, or else `otherwise`.
template <size_t count>
std::string nameFor(std::string_view text, const std::array<Names, count>& names,
                    std::string_view otherwise) {
    for (const auto& [part, name] : names)
        if (text.find(part) != std::string_view::npos) return std::string(name);
    return std::string(otherwise);
}

bool isSDCardInSlot(const BlockDevice& disk) {
    return isInCardSlot(disk) && disk.cardType == "SD";
}

/// Derives the bus from the disk's path in the kernel's device tree.
std::string busOf(const BlockDevice& disk) {
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

/// Returns the kind of card that is positively known to be in the drive, or nothing.
std::string cardKindOf(const BlockDevice& disk) {
    static constexpr auto kinds = std::to_array<Names>({
        {"flash_sdxc", "SDXC Card"},
        {"flash_sdhc", "SDHC Card"},
        {"flash_sd", "SD Card"},
    });
    // In a native slot the kernel knows best: UDisks2 takes soldered flash for a card.
    if (isInCardSlot(disk)) return isSDCardInSlot(disk) ? "SD Card" : "";
    // What UDisks2 said about the last medium says nothing about this one.
    const bool isAboutThisMedium =
        disk.udisks.isMediaAvailable && disk.udisks.sequenceNumber == disk.sequenceNumber;
    return isAboutThisMedium ? nameFor(disk.udisks.media, kinds, "") : "";
}

/// Returns what the device database calls the reader, or nothing where the same USB device might also be a
/// flash drive.
std::string readerNameOf(const BlockDevice& disk) {
    const bool mayBeFlashDrive = lowercased(disk.databaseName).find("flash drive") != std::string::npos;
    return mayBeFlashDrive ? "" : disk.databaseName;
}

/// Joins the vendor, the model, the reader's name in the device database and the kind of card, each unless
/// the name already contains it.
std::string mediaNameOf(const BlockDevice& disk) {
    std::string name;
    for (const std::string& part :
         {disk.udisks.vendor, disk.udisks.model, readerNameOf(disk), cardKindOf(disk)}) {
        const std::string words = trimmed(printable(part));
        if (words.empty() || lowercased(name).find(lowercased(words)) != std::string::npos) continue;
        name += (name.empty() ? "" : " ") + words;
    }
    return name;
}

bool isExternal(const BlockDevice& disk) {
    return busOf(disk) == "USB";
}

std::string partitionSchemeOf(const BlockDevice& disk) {
    const std::string& table = disk.udisks.partitionTable;
    if (table == "dos") return "FDisk_partition_scheme";
    return table == "gpt" ? "GUID_partition_scheme" : table;
}

PropertyList::List partitionsOf(const Machine& machine, const BlockDevice& disk) {
    auto parts = partsOf(machine, disk);
    std::erase_if(parts, [](const BlockDevice* part) { return part->partitionNumber == 0; });

    PropertyList::List partitions;
    for (const BlockDevice* part : parts) {
        PropertyList::Dictionary entry{
            {"DeviceIdentifier", identifierOf(machine, disk) + "s" + std::to_string(part->partitionNumber)},
            {"Content", part->udisks.fileSystem},
            {"VolumeName", printable(part->udisks.volumeName)},
            {"Size", part->sizeBytes},
        };
        if (!part->mounts.empty()) entry["MountPoint"] = part->mounts.front().target;
        partitions.emplace_back(std::move(entry));
    }
    return partitions;
}

}  // namespace

PropertyList::Dictionary diskListOf(const Machine& machine) {
    PropertyList::List entries;
    for (const BlockDevice* disk : listedDisks(machine)) {
        entries.emplace_back(PropertyList::Dictionary{
            {"DeviceIdentifier", identifierOf(machine, *disk)},
            {"Content", partitionSchemeOf(*disk)},
            {"Size", disk->sizeBytes},
            {"OSInternal", !isExternal(*disk)},
            {"Partitions", partitionsOf(machine, *disk)},
        });
    }
    return {{"AllDisksAndPartitions", entries}};
}

PropertyList::Dictionary diskDetailsOf(const Machine& machine, const BlockDevice& disk) {
    const bool isSoldered = isInCardSlot(disk) && !isSDCardInSlot(disk);
    const std::string place = isExternal(disk) ? "External" : "Internal";
    const auto protection = whyNotWritable(machine, disk);
    PropertyList::Dictionary details{
        {"DeviceIdentifier", identifierOf(machine, disk)},
        {"MediaName", mediaNameOf(disk)},
        {"TotalSize", disk.sizeBytes},
        {"BusProtocol", busOf(disk)},
        // People know their disks by the kernel's names.
        {"DeviceLocation", place + " (/dev/" + disk.name + ")"},
        {"Internal", !isExternal(disk)},
        {"VirtualOrPhysical", isVirtual(disk) ? "Virtual" : "Physical"},
        {"WritableMedia", !protection},
        {"WholeDisk", true},
        {"RemovableMedia", disk.udisks.isMediaRemovable && !isSoldered},
        {"Ejectable", disk.udisks.isEjectable && !isSoldered},
        {"VelmoraTesselSystemName", "/dev/" + disk.name},
    };
    if (protection) details["VelmoraTesselProtectionReason"] = *protection;
    return details;
}

}  // namespace tessel
