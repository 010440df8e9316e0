#pragma once

#include <optional>
#include <string>

#include "model/SDImageFile.h"
#include "model/SDWholeDisk.h"

/// The texts by which the table and the inspector describe a disk, beyond those of its record. All functions
/// are pure.
namespace tessel {

/// Returns whether the bus or the name shows that the disk is a mounted image file.
[[nodiscard]] bool isDiskImage(const SDWholeDisk& disk);

/// Returns the kind of medium, such as "SD Card" or "USB Storage".
[[nodiscard]] std::string mediaKindText(const SDWholeDisk& disk);

/// Returns the bus as reported, or "Unknown connection".
[[nodiscard]] std::string connectionText(const SDWholeDisk& disk);

/// Returns the full explanation of why the disk may not be chosen, or nothing if it may.
[[nodiscard]] std::optional<std::string> protectionText(const SDWholeDisk& disk);

/// Returns why the image can't be written to the disk if it lies on that disk, or nothing if it doesn't.
[[nodiscard]] std::optional<std::string> imageOnDiskText(const SDImageFile& image, const SDWholeDisk& disk);

/// Returns the name of the symbol for the kind of medium.
[[nodiscard]] std::string mediaSymbol(const SDWholeDisk& disk);

/// Returns the name of the device in the system's own path: "mmcblk0" of "/dev/mmcblk0".
[[nodiscard]] std::string systemDeviceName(const std::string& systemName);

/// Returns the device path, followed by the system's own name for the disk if it has one: "/dev/disk4 ·
/// mmcblk0".
[[nodiscard]] std::string devicePathAndName(const SDWholeDisk& disk);

/// Returns the text shown in place of an empty table: one if no disk was found at all, another if all found
/// disks are hidden.
[[nodiscard]] std::string emptyTableText(size_t foundDisks);

}  // namespace tessel
