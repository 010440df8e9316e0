#pragma once

#include <map>
#include <string>

#include "rehearsal/SimulatedReader.h"

namespace tessel {

/// What a reader was asked, but for the first calls, a letter each: list, info, unmount, authorize and eject
/// of disk4, and a question mark for anything else.
inline std::string commandLetters(const SimulatedReader& reader, size_t callsToSkip) {
    static const std::map<std::string, char> letters = {{"diskutil list -plist", 'L'},
                                                        {"diskutil info -plist /dev/disk4", 'I'},
                                                        {"diskutil unmountDisk force /dev/disk4", 'U'},
                                                        {"authopen -stdoutpipe -o 2 /dev/rdisk4", 'A'},
                                                        {"diskutil eject /dev/disk4", 'E'}};
    const auto calls = reader.calls();
    std::string commands;
    for (size_t i = callsToSkip; i < calls.size(); ++i) {
        const auto letter = letters.find(calls[i]);
        commands += letter == letters.end() ? '?' : letter->second;
    }
    return commands;
}

}  // namespace tessel
