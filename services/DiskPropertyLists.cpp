#include "services/DiskPropertyLists.h"

#include <algorithm>
#include <initializer_list>
#include <iterator>
#include <ranges>
#include <set>

#include "foundation/PropertyList.h"
#include "foundation/Text.h"
#include "model/TesselError.h"

namespace tessel {

namespace {

using Dictionary = PropertyList::Dictionary;
using Keys = std::initializer_list<std::string_view>;
using PartitionMap = std::map<std::string, SDDiskPartition>;

constexpr Keys wholeDiskListKeys = {"WholeDisks", "AllWholeDisks", "AllDisks"};
constexpr Keys childListKeys = {"Partitions", "APFSVolumes", "Volumes", "CoreStorageLogicalVolumes"};
constexpr Keys partitionSchemeKeys = {"Content", "PartitionMapType"};

const PropertyList* valueOf(const Dictionary& dictionary, std::string_view key) {
    const auto entry = dictionary.find(key);
    return entry == dictionary.end() ? nullptr : &entry->second;
}

/// Returns the value of the first key whose value can be read.
template <typename Value>
std::optional<Value> firstValue(const Dictionary& dictionary, Keys keys,
                                std::optional<Value> (*read)(const PropertyList&)) {
    for (const std::string_view key : keys) {
        const PropertyList* value = valueOf(dictionary, key);
        if (const auto result = value ? read(*value) : std::nullopt) return result;
    }
    return std::nullopt;
}

std::optional<std::string> stringValue(const Dictionary& dictionary, Keys keys) {
    return firstValue<std::string>(dictionary, keys, [](const PropertyList& value) {
        const std::string* text = value.asText();
        return text && !text->empty() ? std::optional(*text) : std::nullopt;
    });
}

/// Returns the value of the first key whose value is a count. A number that can't be one, such as a negative
/// number, is passed over like a value of another type.
std::optional<uint64_t> unsignedValue(const Dictionary& dictionary, Keys keys) {
    return firstValue<uint64_t>(dictionary, keys, [](const PropertyList& value) -> std::optional<uint64_t> {
        const uint64_t* whole = value.asWholeNumber();
        if (whole && *whole < uint64_t{1} << 63) return *whole;
        const double* real = value.asReal();
        if (real && *real >= 0 && *real < 0x1p63) return static_cast<uint64_t>(*real);
        return std::nullopt;
    });
}

std::optional<bool> flagText(std::string_view text) {
    const std::string word = lowercased(trimmed(text));
    if (word == "true" || word == "yes" || word == "1") return true;
    if (word == "false" || word == "no" || word == "0") return false;
    return std::nullopt;
}

std::optional<bool> flagValue(const Dictionary& dictionary, Keys keys) {
    return firstValue<bool>(dictionary, keys, [](const PropertyList& value) -> std::optional<bool> {
        if (const bool* flag = value.asFlag()) return *flag;
        if (const uint64_t* whole = value.asWholeNumber()) return *whole != 0;
        if (const double* real = value.asReal()) return *real != 0;
        if (const std::string* text = value.asText()) return flagText(*text);
        return std::nullopt;
    });
}

/// Returns the elements of a list if all of them are of this kind, otherwise none.
template <typename Element>
std::vector<const Element*> elementsOf(const Dictionary& dictionary, std::string_view key,
                                       const Element* (PropertyList::*as)() const) {
    const PropertyList* value = valueOf(dictionary, key);
    const PropertyList::List* list = value ? value->asList() : nullptr;
    if (!list) return {};
    std::vector<const Element*> elements;
    for (const PropertyList& entry : *list) {
        const Element* element = (entry.*as)();
        if (!element) return {};
        elements.push_back(element);
    }
    return elements;
}

bool isListedBefore(std::string_view one, std::string_view other) {
    return localizedStandardCompare(one, other) < 0;
}

SDDiskPartition readPartition(const std::string& id, const Dictionary& partition) {
    return {
        .id = id,
        .content = stringValue(partition, {"Content", "FilesystemName", "FileSystemPersonality",
                                           "APFSVolumeRole", "Role"})
                       .value_or(""),
        .volumeName = stringValue(partition, {"VolumeName", "Name"}).value_or(""),
        .sizeBytes = unsignedValue(partition, {"Size", "TotalSize"}).value_or(0),
        .mountPoint = stringValue(partition, {"MountPoint"}).value_or(""),
    };
}

/// Adds what the child lists name and, since volumes lie in containers, what those name in turn.
void collectPartitions(const Dictionary& parent, PartitionMap& partitions) {
    for (const std::string_view key : childListKeys) {
        for (const Dictionary* child : elementsOf(parent, key, &PropertyList::asDictionary)) {
            if (const auto id = stringValue(*child, {"DeviceIdentifier"})) {
                partitions[*id] = readPartition(*id, *child);
            }
            collectPartitions(*child, partitions);
        }
    }
}

DiskLayout readLayout(const Dictionary& disk) {
    DiskLayout layout = {
        .partitionScheme = stringValue(disk, partitionSchemeKeys).value_or(""),
        .sizeBytes = unsignedValue(disk, {"Size", "TotalSize", "IOKitSize"}),
        .isInternal = flagValue(disk, {"OSInternal", "OSInternalMedia", "Internal", "InternalMedia"}),
    };
    PartitionMap partitions;
    collectPartitions(disk, partitions);
    std::ranges::copy(std::views::values(partitions), std::back_inserter(layout.partitions));
    std::ranges::sort(layout.partitions, isListedBefore, &SDDiskPartition::id);
    return layout;
}

std::optional<bool> readInternalFlag(const Dictionary& info, std::string_view location,
                                     const DiskLayout& layout) {
    const auto flag =
        flagValue(info, {"Internal", "OSInternal", "OSInternalMedia", "InternalMedia", "DeviceInternal"});
    if (flag) return flag;
    const std::string words = lowercased(trimmed(location));
    if (words.find("external") != std::string::npos) return false;
    if (words.find("internal") != std::string::npos) return true;
    return layout.isInternal;
}

bool readPhysicalFlag(const Dictionary& info, const SDWholeDisk& disk) {
    if (const auto kind = stringValue(info, {"VirtualOrPhysical"}))
        return equalIgnoringCase(*kind, "Physical");
    if (const auto isVirtual = flagValue(info, {"Virtual", "IsVirtual"})) return !*isVirtual;
    const std::string identity =
        lowercased(joined({disk.busProtocol, disk.mediaName, disk.deviceLocation}, " "));
    return identity.find("disk image") == std::string::npos &&
           identity.find("synthesized") == std::string::npos;
}

bool readWritableFlag(const Dictionary& info) {
    const auto isWritable = flagValue(info, {"WritableMedia", "MediaWritable", "Writable", "WritableVolume"});
    if (isWritable) return *isWritable;
    return flagValue(info, {"ReadOnlyMedia", "MediaReadOnly", "ReadOnlyVolume", "ReadOnly"}) == false;
}

SDWholeDisk readDisk(const Dictionary& info, std::string_view askedFor, const DiskLayout& layout) {
    const auto location = stringValue(info, {"DeviceLocation", "MediaLocation", "Location"});
    SDWholeDisk disk;
    disk.id = stringValue(info, {"DeviceIdentifier"}).value_or(std::string(askedFor));
    disk.mediaName = stringValue(info, {"MediaName", "DeviceMediaName", "IORegistryEntryName", "VolumeName"})
                         .value_or("Unknown Media");
    disk.sizeBytes =
        unsignedValue(info, {"TotalSize", "Size", "IOKitSize"}).value_or(layout.sizeBytes.value_or(0));
    disk.busProtocol =
        stringValue(info, {"BusProtocol", "DeviceProtocol", "Protocol"}).value_or("Unknown bus");
    disk.isInternal = readInternalFlag(info, location.value_or(""), layout);
    disk.deviceLocation = location.value_or(locationByFlag(disk.isInternal));
    disk.isPhysical = readPhysicalFlag(info, disk);
    disk.isWritable = readWritableFlag(info);
    disk.partitionScheme = layout.partitionScheme;
    disk.partitions = layout.partitions;
    disk.isWhole = flagValue(info, {"Whole", "WholeDisk"}).value_or(isWholeDiskIdentifier(disk.id));
    disk.isRemovable = flagValue(info, {"RemovableMedia", "MediaRemovable", "Removable"}).value_or(false);
    disk.isEjectable = flagValue(info, {"Ejectable", "MediaEjectable"}).value_or(false);
    disk.hasDetailedInfo = true;
    disk.systemName = stringValue(info, {"VelmoraTesselSystemName"});
    disk.protectionReason = stringValue(info, {"VelmoraTesselProtectionReason"});
    return disk;
}

}  // namespace

std::string locationByFlag(std::optional<bool> isInternal) {
    if (!isInternal) return "Unknown";
    return *isInternal ? "Internal" : "External";
}

const DiskLayout* DiskList::layoutOf(std::string_view identifier) const {
    const auto entry = layouts.find(identifier);
    return entry == layouts.end() ? nullptr : &entry->second;
}

DiskList parseDiskList(std::string_view output) {
    const PropertyList list = parsePropertyList(output);
    const Dictionary* root = list.asDictionary();
    if (!root) throw TesselError::commandFailed("diskutil returned an unexpected property-list structure.");

    DiskList result;
    std::set<std::string> identifiers;
    for (const std::string_view key : wholeDiskListKeys) {
        for (const std::string* id : elementsOf(*root, key, &PropertyList::asText))
            identifiers.insert(*id);
    }
    for (const Dictionary* disk : elementsOf(*root, "AllDisksAndPartitions", &PropertyList::asDictionary)) {
        const auto id = stringValue(*disk, {"DeviceIdentifier"});
        if (!id) continue;
        identifiers.insert(*id);
        result.layouts[*id] = readLayout(*disk);
    }
    std::ranges::copy_if(identifiers, std::back_inserter(result.identifiers), isWholeDiskIdentifier);
    std::ranges::sort(result.identifiers, isListedBefore);
    return result;
}

std::optional<SDWholeDisk> parseDiskInfo(std::string_view output, std::string_view identifier,
                                         const DiskLayout* layout) {
    const PropertyList details = parsePropertyList(output);
    const Dictionary* info = details.asDictionary();
    if (!info) return std::nullopt;

    const DiskLayout ownLayout = {.partitionScheme = stringValue(*info, partitionSchemeKeys).value_or("")};
    return readDisk(*info, identifier, layout ? *layout : ownLayout);
}

}  // namespace tessel
