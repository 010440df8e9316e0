#include <algorithm>

#include "model/SDCardPolicy.h"
#include "viewmodel/TesselViewModel.h"

namespace tessel {

namespace {

std::string diskCountText(size_t count) {
    return std::to_string(count) + (count == 1 ? " disk" : " disks");
}

bool isEligible(const SDWholeDisk& disk) {
    return !eligibilityFailureReason(disk);
}

std::string verdict(const SDWholeDisk& disk) {
    if (const auto reason = eligibilityFailureReason(disk)) {
        return "Protected disk: " + disk.displaySummary() + ". Reason: " + *reason;
    }
    return "Selectable SD card: " + disk.displaySummary() + " · " + disk.locationText() + " · " +
           disk.busProtocol + " · " + disk.partitionSchemeText() + ".";
}

}  // namespace

Task<> TesselViewModel::refreshDisks() {
    if (isBusy()) co_return;
    hasStartedScan = true;
    state = {TesselOperationState::Case::scanningDisks, ""};
    appendLog("Scanning every whole disk visible to macOS.");

    auto scan = co_await outcomeOf(diskService.scanDisks());
    if (scan.error()) {
        state = TesselOperationState::failed("Disk scan failed");
        logError(scan.error());
        co_return;
    }
    applyScan(std::move(scan).value());
}

void TesselViewModel::applyScan(std::vector<SDWholeDisk> scannedDisks) {
    disks = std::move(scannedDisks);
    keepOrClearTarget();
    if (disks().empty()) {
        state = TesselOperationState::warning("No whole disks found");
        appendLog(
            "macOS returned no whole-disk identifiers. Confirm that App Sandbox is disabled and press "
            "Refresh Disks again.");
        return;
    }

    const auto selectable = std::ranges::count_if(disks(), isEligible);
    const auto found = diskCountText(disks().size()) + " found · ";
    if (selectable > 0) {
        state = TesselOperationState::completed(found + std::to_string(selectable) + " selectable");
        appendLog("All whole disks are visible. Only positively identified SD cards can be selected.");
    } else {
        state = TesselOperationState::warning(found + "none selectable");
        appendLog("All whole disks are visible, but none passed every SD-card target safety check.");
    }
    for (const auto& disk : disks())
        appendLog(verdict(disk));
}

/// The target stays only while a disk of that name may still be written to.
void TesselViewModel::keepOrClearTarget() {
    const bool isStillEligible = std::ranges::any_of(
        disks(), [this](const SDWholeDisk& disk) { return disk.id == selectedDiskID() && isEligible(disk); });
    if (!isStillEligible) selectedDiskID = "";
}

void TesselViewModel::selectDisk(const std::string& id) {
    if (isBusy()) return;
    const auto disk = std::ranges::find(disks(), id, &SDWholeDisk::id);
    if (disk == disks().end() || !isEligible(*disk)) return;
    selectedDiskID = id;
    resetWriteProgress();
    state = TesselOperationState::completed("Target " + id + " selected");
    appendLog("Selected SD-card target: " + disk->displaySummary() + " · " + disk->partitionCountText() +
              ".");
}

/// An ejected card is no longer in the list.
void TesselViewModel::forgetDisk(const std::string& id) {
    disks.modify(
        [&id](auto& listed) { std::erase_if(listed, [&id](const auto& disk) { return disk.id == id; }); });
}

}  // namespace tessel
