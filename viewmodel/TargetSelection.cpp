#include "viewmodel/TargetSelection.h"

#include <algorithm>
#include <utility>

#include "model/SDCardPolicy.h"

namespace tessel {

const SDWholeDisk* TargetSelection::selectedDisk() const {
    const auto found = std::ranges::find(disks(), selectedDiskID(), &SDWholeDisk::id);
    return found == disks().end() ? nullptr : &*found;
}

void TargetSelection::replaceDisks(std::vector<SDWholeDisk> disks, const SleepWatch& sinceScan) {
    scanned = std::move(disks);
    sleepWatch = sinceScan;
    const bool isStillEligible = std::ranges::any_of(scanned(), [this](const SDWholeDisk& disk) {
        return disk.id == selectedDiskID() && !eligibilityFailureReason(disk);
    });
    if (!isStillEligible) targetID = "";
}

const SDWholeDisk* TargetSelection::select(const std::string& id) {
    const auto disk = std::ranges::find(disks(), id, &SDWholeDisk::id);
    if (disk == disks().end() || eligibilityFailureReason(*disk)) return nullptr;
    targetID = id;
    return &*disk;
}

void TargetSelection::forget(const std::string& id) {
    targetID = "";
    scanned.modify(
        [&id](auto& disks) { std::erase_if(disks, [&id](const auto& disk) { return disk.id == id; }); });
}

}  // namespace tessel
