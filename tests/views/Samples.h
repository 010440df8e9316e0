#pragma once

#include <QWidget>
#include <string>
#include <vector>

#include "model/SDWholeDisk.h"

namespace tessel {

/// An SD card that may be chosen.
inline SDWholeDisk sampleCard(const std::string& id, const std::string& mediaName = "SDXC Reader",
                              uint64_t sizeBytes = 32'000'000'000) {
    return {.id = id,
            .mediaName = mediaName,
            .sizeBytes = sizeBytes,
            .busProtocol = "Secure Digital",
            .deviceLocation = "External",
            .partitionScheme = "FDisk_partition_scheme",
            .partitions = {},
            .isInternal = false,
            .isWhole = true,
            .isRemovable = true,
            .isEjectable = true,
            .isWritable = true,
            .isPhysical = true,
            .hasDetailedInfo = true};
}

/// A fixed disk, which is protected.
inline SDWholeDisk sampleFixedDisk(const std::string& id) {
    SDWholeDisk disk = sampleCard(id, "Fast NVMe Disk", 1'000'000'000'000);
    disk.busProtocol = "PCI-Express";
    disk.isInternal = true;
    disk.isRemovable = false;
    disk.isEjectable = false;
    return disk;
}

/// The shown widgets of this class below another, in the order of their making.
template <typename T>
std::vector<T*> shownWidgets(const QWidget& ancestor) {
    std::vector<T*> found;
    for (QWidget* widget : ancestor.findChildren<QWidget*>()) {
        if (auto* match = dynamic_cast<T*>(widget); match && match->isVisibleTo(&ancestor)) {
            found.push_back(match);
        }
    }
    return found;
}

}  // namespace tessel
