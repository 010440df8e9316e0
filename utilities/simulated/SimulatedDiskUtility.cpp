#include "utilities/simulated/SimulatedDiskUtility.h"

#include <fcntl.h>

#include "foundation/Errors.h"
#include "platform/FileDescriptor.h"
#include "platform/linux/BlockDescriptor.h"

namespace tessel {

namespace {

constexpr const char* identifierKey = "DeviceIdentifier";
constexpr const char* partitionsKey = "Partitions";
constexpr const char* mountPointKey = "MountPoint";

PlatformError refusal(const std::string& text) {
    return {1, text};
}

/// Adds the identifiers of partitions and of the volumes inside them, whatever the key.
void collectIdentifiers(const PropertyList& value, PropertyList::List& identifiers) {
    if (const PropertyList::List* list = value.asList()) {
        for (const PropertyList& item : *list)
            collectIdentifiers(item, identifiers);
    } else if (const PropertyList::Dictionary* dictionary = value.asDictionary()) {
        if (const auto identifier = dictionary->find(identifierKey); identifier != dictionary->end())
            identifiers.push_back(identifier->second);
        for (const auto& [key, entry] : *dictionary)
            collectIdentifiers(entry, identifiers);
    }
}

PropertyList withoutMountPoints(const PropertyList& value) {
    if (const PropertyList::List* list = value.asList()) {
        PropertyList::List unmounted;
        for (const PropertyList& item : *list)
            unmounted.push_back(withoutMountPoints(item));
        return unmounted;
    }
    const PropertyList::Dictionary* dictionary = value.asDictionary();
    if (!dictionary) return value;
    PropertyList::Dictionary unmounted;
    for (const auto& [key, entry] : *dictionary)
        if (key != mountPointKey) unmounted.emplace(key, withoutMountPoints(entry));
    return unmounted;
}

/// Throws while a program has the medium open, since no system would eject it then.
void requireClosed(const std::filesystem::path& medium) {
    const FileDescriptor descriptor(open(medium.c_str(), O_RDONLY | O_CLOEXEC));
    if (descriptor.isOpen() && !lockExclusively(descriptor.get()).isSuccess())
        throw refusal("Resource busy: a program still has the card open.");
}

/// Returns a disk's entry in the list, under the keys that the list uses.
PropertyList::Dictionary listEntry(const PropertyList::Dictionary& details) {
    constexpr std::pair<const char*, const char*> keys[] = {
        {identifierKey, identifierKey},    {"Content", "Content"},         {"TotalSize", "Size"},
        {"OSInternalMedia", "OSInternal"}, {partitionsKey, partitionsKey},
    };
    PropertyList::Dictionary entry;
    for (const auto& [key, listKey] : keys)
        if (const auto found = details.find(key); found != details.end())
            entry.emplace(listKey, found->second);
    return entry;
}

}  // namespace

PropertyList::Dictionary SimulatedDiskUtility::list() {
    PropertyList::List allDisks;
    PropertyList::List wholeDisks;
    PropertyList::List entries;
    for (const std::string& disk : reader.disks()) {
        reader.behaviour(disk).waitBefore("list");
        const PropertyList::Dictionary entry = listEntry(reader.details(disk));
        wholeDisks.emplace_back(disk);
        collectIdentifiers(entry, allDisks);
        entries.emplace_back(entry);
    }
    return {{"AllDisks", allDisks}, {"WholeDisks", wholeDisks}, {"AllDisksAndPartitions", entries}};
}

PropertyList::Dictionary SimulatedDiskUtility::info(const std::string& identifier) {
    reader.behaviour(identifier).waitBefore("info");
    PropertyList::Dictionary details = reader.details(identifier);
    details.erase(partitionsKey);
    return details;
}

void SimulatedDiskUtility::unmount(const std::string& identifier) {
    const DiskBehaviour behaviour = reader.behaviour(identifier);
    behaviour.waitBefore("unmountDisk");
    if (!behaviour.refusesUnmount.empty()) throw refusal(behaviour.refusesUnmount);
    reader.setDetails(identifier, *withoutMountPoints(reader.details(identifier)).asDictionary());
}

void SimulatedDiskUtility::eject(const std::string& identifier) {
    const DiskBehaviour behaviour = reader.behaviour(identifier);
    behaviour.waitBefore("eject");
    if (!behaviour.ejectFails.empty()) throw refusal(behaviour.ejectFails);
    requireClosed(reader.mediumPath(identifier));
    reader.takeOut(identifier);
}

}  // namespace tessel
