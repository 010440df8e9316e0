#pragma once

#include <filesystem>
#include <map>
#include <string>

#include "utilities/linux/DiskSnapshot.h"

namespace tessel {

/// A machine described in a file of sections and keys, together with what is expected of it; see
/// tests/machines. Each section is a block device. A missing key has the value of a healthy disk.
struct DescribedMachine {
    using Section = std::map<std::string, std::string>;

    DiskSnapshot snapshot;
    std::map<std::string, Section> sections;  ///< by the names of the devices

    /// Reads the description. Throws an exception where the file is none.
    static DescribedMachine read(const std::filesystem::path& file);
};

}  // namespace tessel
