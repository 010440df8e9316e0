#pragma once

#include <map>
#include <string>
#include <vector>

#include "foundation/Text.h"

namespace tessel {

/// Names each call after the first few by a word: "list info unmount authorize eject" for the commands about
/// disk4. Any other call is quoted in full.
inline std::string commandNames(const std::vector<std::string>& calls, size_t callsToSkip) {
    static const std::map<std::string, std::string> names = {
        {"diskutil list -plist", "list"},
        {"diskutil info -plist /dev/disk4", "info"},
        {"diskutil unmountDisk force /dev/disk4", "unmount"},
        {"authopen -stdoutpipe -o 2 /dev/rdisk4", "authorize"},
        {"diskutil eject /dev/disk4", "eject"}};
    std::vector<std::string> words;
    for (size_t call = callsToSkip; call < calls.size(); ++call) {
        const auto name = names.find(calls[call]);
        words.push_back(name == names.end() ? calls[call] : name->second);
    }
    return joined(words, " ");
}

}  // namespace tessel
