#pragma once

#include <cstdio>
#include <string>

#include "utilities/linux/system/DeviceUses.h"

namespace tessel {

/// Notes the uses of devices in these texts of /proc/self/mountinfo and /proc/swaps.
inline void addUses(DiskSnapshot& snapshot, std::string mounts, std::string swaps) {
    const auto read = [](std::string& text) {
        MountTable table(mnt_new_table());
        FILE* const file = fmemopen(text.data(), text.size(), "r");
        mnt_table_parse_stream(table.get(), file, "table");
        std::fclose(file);
        return table;
    };
    addUses(snapshot, read(mounts).get(), read(swaps).get());
}

}  // namespace tessel
