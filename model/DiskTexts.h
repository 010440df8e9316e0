#pragma once

#include <string>

#include "model/SDWholeDisk.h"

/// How the table and the inspector word a disk, beyond the record's own texts. Pure functions.
namespace tessel {

/// Whether bus or name say that the disk is a mounted image file.
[[nodiscard]] bool isDiskImage(const SDWholeDisk& disk);

/// "SD Card", "USB Storage", …
[[nodiscard]] std::string mediaKindText(const SDWholeDisk& disk);

/// The bus as reported, or "Unknown connection".
[[nodiscard]] std::string connectionText(const SDWholeDisk& disk);

/// The name of the symbol for the kind of medium.
[[nodiscard]] std::string mediaSymbol(const SDWholeDisk& disk);

/// "/dev/disk4".
[[nodiscard]] std::string devicePath(const SDWholeDisk& disk);

/// What stands in the place of a table without rows: one text when no disk was found at all, another when all
/// that were found are hidden.
[[nodiscard]] std::string emptyTableText(size_t foundDisks);

}  // namespace tessel
