#pragma once

#include <libmount/libmount.h>

#include <cstdio>
#include <memory>
#include <string>

#include "foundation/Release.h"
#include "utilities/linux/system/DeviceUses.h"

namespace tessel {

/// Notes the uses of the devices that these texts of /proc/self/mountinfo and /proc/swaps tell of.
inline void addUses(DiskSnapshot& snapshot, std::string mounts, std::string swaps) {
    using Table = std::unique_ptr<libmnt_table, Release<mnt_unref_table>>;
    const auto read = [](std::string& text) {
        Table table(mnt_new_table());
        FILE* const file = fmemopen(text.data(), text.size(), "r");
        mnt_table_parse_stream(table.get(), file, "table");
        std::fclose(file);
        return table;
    };
    addUses(snapshot, read(mounts).get(), read(swaps).get());
}

}  // namespace tessel
