#include "viewmodel/ScanSummary.h"

#include <algorithm>

#include "model/DiskTexts.h"
#include "model/SDCardPolicy.h"
#include "model/SystemWords.h"

namespace tessel {

namespace {

std::string diskCountText(size_t count) {
    return std::to_string(count) + (count == 1 ? " disk" : " disks");
}

std::string verdict(const SDWholeDisk& disk) {
    if (const auto reason = protectionText(disk)) {
        return "Protected disk: " + disk.displaySummary() + ". Reason: " + *reason;
    }
    return "Selectable SD card: " + disk.displaySummary() + " · " + disk.locationText() + " · " +
           disk.busProtocol + " · " + disk.partitionSchemeText() + ".";
}

}  // namespace

ScanSummary ScanSummary::of(const std::vector<SDWholeDisk>& disks) {
    if (disks.empty()) {
        return {.state = TesselOperationState::warning("No whole disks found"),
                .messages = {systemWords().noWholeDisks}};
    }
    ScanSummary summary;
    const auto selectable =
        std::ranges::count_if(disks, [](const SDWholeDisk& disk) { return !eligibilityFailureReason(disk); });
    const auto found = diskCountText(disks.size()) + " found · ";
    if (selectable > 0) {
        summary.state = TesselOperationState::completed(found + std::to_string(selectable) + " selectable");
        summary.messages = {
            "All whole disks are visible. Only positively identified SD cards can be selected."};
    } else {
        summary.state = TesselOperationState::warning(found + "none selectable");
        summary.messages = {
            "All whole disks are visible, but none passed every SD-card target safety check."};
    }
    std::ranges::transform(disks, std::back_inserter(summary.messages), verdict);
    return summary;
}

}  // namespace tessel
