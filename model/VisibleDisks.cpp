#include "model/VisibleDisks.h"

#include <algorithm>
#include <string>
#include <utility>

#include "foundation/Text.h"
#include "model/DiskTexts.h"
#include "model/SDCardPolicy.h"

namespace tessel {

namespace {

/// A disk with the text that it is sorted by, which is built once instead of at each comparison.
struct Entry {
    SDWholeDisk disk;
    std::string key;
};

std::string sortKey(const SDWholeDisk& disk, DiskSortField field) {
    const std::string name = lowercased(trimmed(disk.mediaName));
    switch (field) {
        case DiskSortField::disk:
            return name + "|" + disk.id;
        case DiskSortField::size:
            return {};
        case DiskSortField::media:
            return lowercased(mediaKindText(disk)) + "|" + lowercased(connectionText(disk)) + "|" + name;
    }
    return {};
}

/// Returns a negative number, zero or a positive number if, in ascending order, `one` comes before, with or
/// after `other`.
int compare(const Entry& one, const Entry& other, DiskSortField field) {
    if (field == DiskSortField::size) {
        const uint64_t size = one.disk.sizeBytes;
        const uint64_t otherSize = other.disk.sizeBytes;
        return size == otherSize ? 0 : size < otherSize ? -1 : 1;
    }
    return localizedStandardCompare(one.key, other.key);
}

}  // namespace

std::vector<SDWholeDisk> visibleDisks(const std::vector<SDWholeDisk>& disks, bool showAllDisks,
                                      DiskSortField field, bool ascending) {
    std::vector<Entry> entries;
    for (const SDWholeDisk& disk : disks) {
        if (showAllDisks || (disk.isPhysical && isRecognizedSDCard(disk)))
            entries.push_back({disk, sortKey(disk, field)});
    }
    std::ranges::sort(entries, [=](const Entry& one, const Entry& other) {
        const int result = compare(one, other, field);
        if (result == 0) return localizedStandardCompare(one.disk.id, other.disk.id) < 0;
        return ascending ? result < 0 : result > 0;
    });
    std::vector<SDWholeDisk> sorted;
    sorted.reserve(entries.size());
    for (Entry& entry : entries)
        sorted.push_back(std::move(entry.disk));
    return sorted;
}

std::optional<std::string> reconciledInspection(const std::optional<std::string>& inspectedID,
                                                const std::string& targetID,
                                                const std::vector<SDWholeDisk>& listed) {
    const auto isListed = [&listed](const std::string& id) {
        return std::ranges::find(listed, id, &SDWholeDisk::id) != listed.end();
    };
    if (inspectedID && isListed(*inspectedID)) return inspectedID;
    if (isListed(targetID)) return targetID;
    return std::nullopt;
}

}  // namespace tessel
