#include "viewmodel/TargetSelection.h"

#include <algorithm>
#include <utility>

#include "model/SDCardPolicy.h"

namespace tessel {

const SDWholeDisk* TargetSelection::selectedDisk() const {
    const auto found = std::ranges::find(disks(), selectedDiskID(), &SDWholeDisk::id);
    return found == disks().end() ? nullptr : &*found;
}

void TargetSelection::replaceDisks(std::vector<SDWholeDisk> scanned, const SleepWatch& sinceScan) {
    disks = std::move(scanned);
    sleepWatch = sinceScan;
    const bool isStillEligible = std::ranges::any_of(disks(), [this](const SDWholeDisk& disk) {
        return disk.id == selectedDiskID() && !eligibilityFailureReason(disk);
    });
    if (!isStillEligible) selectedDiskID = "";
}

const SDWholeDisk* TargetSelection::select(const std::string& id) {
    const auto disk = std::ranges::find(disks(), id, &SDWholeDisk::id);
    if (disk == disks().end() || eligibilityFailureReason(*disk)) return nullptr;
    selectedDiskID = id;
    return &*disk;
}

void TargetSelection::forget(const std::string& id) {
    selectedDiskID = "";
    disks.modify(
        [&id](auto& listed) { std::erase_if(listed, [&id](const auto& disk) { return disk.id == id; }); });
}

}  // namespace tessel
