#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace tessel {

/// Which program to start, and what to tell it.
struct Command {
    std::filesystem::path executable;
    std::vector<std::string> arguments;              ///< without the program's name
    std::map<std::string, std::string> environment;  ///< added to this program's own; these values win
};

}  // namespace tessel
