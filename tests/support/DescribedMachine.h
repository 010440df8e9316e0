#pragma once

#include <filesystem>
#include <map>
#include <string>

#include "utilities/linux/Machine.h"

namespace tessel {

/// A machine that is described in a file of sections and keys, with what is expected of it. A section is a
/// block device; see tests/machines. What a section leaves out is as it is for a healthy disk.
struct DescribedMachine {
    using Section = std::map<std::string, std::string>;

    Machine machine;
    std::map<std::string, Section> sections;  ///< by the devices' names

    static DescribedMachine read(const std::filesystem::path& file);
};

}  // namespace tessel
