#pragma once

#include <optional>
#include <string>

#include "model/SDImageFile.h"
#include "model/SDWholeDisk.h"

/// These pure functions say how the table and the inspector word a disk, beyond the record's own texts.
namespace tessel {

/// Tells whether the bus or the name says that the disk is a mounted image file.
[[nodiscard]] bool isDiskImage(const SDWholeDisk& disk);

/// Returns the kind of medium, such as "SD Card" or "USB Storage".
[[nodiscard]] std::string mediaKindText(const SDWholeDisk& disk);

/// Returns the bus as reported, or "Unknown connection".
[[nodiscard]] std::string connectionText(const SDWholeDisk& disk);

/// Returns why the disk may not be chosen, in full, or nothing if it may.
[[nodiscard]] std::optional<std::string> protectionText(const SDWholeDisk& disk);

/// Returns why the image can't be written to the disk if it lies on that disk, or nothing if it doesn't.
[[nodiscard]] std::optional<std::string> imageOnDiskText(const SDImageFile& image, const SDWholeDisk& disk);

/// Returns the name of the symbol for the kind of medium.
[[nodiscard]] std::string mediaSymbol(const SDWholeDisk& disk);

/// Returns the path and, where the system has its own, that name: "/dev/disk4 · mmcblk0".
[[nodiscard]] std::string devicePathAndName(const SDWholeDisk& disk);

/// Returns what stands in the place of a table without rows: one text if no disk was found at all, another if
/// all that were found are hidden.
[[nodiscard]] std::string emptyTableText(size_t foundDisks);

}  // namespace tessel
