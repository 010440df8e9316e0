#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace tessel {

/// Says which program to start, and with what.
struct Command {
    std::filesystem::path executable;
    std::vector<std::string> arguments;              ///< without the program's name
    std::map<std::string, std::string> environment;  ///< added to this program's own; these values win
};

}  // namespace tessel
