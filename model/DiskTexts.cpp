#include "model/DiskTexts.h"

#include <algorithm>
#include <filesystem>
#include <string_view>

#include "foundation/Text.h"
#include "model/SDCardPolicy.h"
#include "model/SystemWords.h"

namespace tessel {

namespace {

bool mentions(std::string_view text, std::string_view lowercaseWords) {
    return lowercased(trimmed(text)).find(lowercaseWords) != std::string::npos;
}

}  // namespace

bool isDiskImage(const SDWholeDisk& disk) {
    return mentions(disk.busProtocol, "disk image") || mentions(disk.mediaName, "disk image");
}

std::string mediaKindText(const SDWholeDisk& disk) {
    if (isDiskImage(disk)) return "Disk Image";
    if (!disk.isPhysical) return "Virtual / Synthesized";
    if (isRecognizedSDCard(disk)) return "SD Card";
    if (mentions(disk.busProtocol, "usb")) return "USB Storage";
    if (!disk.isInternal) return "Physical Disk";
    return *disk.isInternal ? "Internal Disk" : "External Disk";
}

std::string connectionText(const SDWholeDisk& disk) {
    const std::string bus = trimmed(disk.busProtocol);
    return bus.empty() ? "Unknown connection" : bus;
}

std::optional<std::string> protectionText(const SDWholeDisk& disk) {
    auto text = eligibilityFailureReason(disk);
    if (text == systemWords().cardNotWritable && disk.protectionReason) *text += " " + *disk.protectionReason;
    return text;
}

std::optional<std::string> imageOnDiskText(const SDImageFile& image, const SDWholeDisk& disk) {
    // A partition's record holds its mount point in printable form.
    const auto holds = [&disk](const std::filesystem::path& folder) {
        const std::string shown = printable(folder.string());
        return !shown.empty() && std::ranges::find(disk.partitions, shown, &SDDiskPartition::mountPoint) !=
                                     disk.partitions.end();
    };
    auto folder = image.url.parent_path();
    while (!holds(folder) && folder.has_relative_path())
        folder = folder.parent_path();
    if (!holds(folder)) return std::nullopt;
    return "The selected image lies on the selected SD card, which a write would erase. Copy the image to "
           "another disk and select the copy.";
}

std::string mediaSymbol(const SDWholeDisk& disk) {
    if (isDiskImage(disk)) return "doc.fill";
    if (!disk.isPhysical) return "square.stack.3d.up.fill";
    if (isRecognizedSDCard(disk)) return "sdcard.fill";
    return disk.isInternal.value_or(false) ? "internaldrive.fill" : "externaldrive.fill";
}

std::string systemDeviceName(const std::string& systemName) {
    return systemName.substr(systemName.rfind('/') + 1);
}

std::string devicePathAndName(const SDWholeDisk& disk) {
    if (!disk.systemName) return devicePath(disk.id);
    return devicePath(disk.id) + " · " + systemDeviceName(*disk.systemName);
}

std::string emptyTableText(size_t foundDisks) {
    return foundDisks == 0 ? "No whole disks are available. Insert an SD card and refresh the list."
                           : "No positively identified SD card is currently available. Enable Show All Disks "
                             "only for diagnostic inspection.";
}

}  // namespace tessel
