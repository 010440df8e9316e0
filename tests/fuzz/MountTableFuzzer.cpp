#include <libmount/libmount.h>

#include <cstdio>
#include <cstdlib>
#include <memory>

#include "foundation/Release.h"
#include "utilities/linux/system/DeviceUses.h"

using namespace tessel;

namespace {

using Table = std::unique_ptr<libmnt_table, Release<mnt_unref_table>>;

/// Notes the uses of a device that stands for all that this computer lacks.
BlockDevice usesOf(std::string mounts, std::string swaps) {
    const auto read = [](std::string& text) {
        Table table(mnt_new_table());
        FILE* const file = fmemopen(text.data(), text.size(), "r");
        mnt_table_parse_stream(table.get(), file, "table");
        std::fclose(file);
        return table;
    };
    Machine machine{.devices = {BlockDevice{}}};
    addUses(machine, read(mounts).get(), read(swaps).get());
    return machine.devices[0];
}

}  // namespace

/// Whatever the tables hold, they are read; and each folder that the kernel can name is told by its own name.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
    const std::string text(reinterpret_cast<const char*>(bytes), size);
    static_cast<void>(usesOf(text, text));

    const std::string folder = "/" + text.substr(0, text.find('\0'));
    std::string escaped;
    for (const char character : folder) {
        char number[5];
        std::snprintf(number, sizeof number, "\\%03o", static_cast<unsigned char>(character));
        const bool isEscaped = std::string_view(" \t\n\\").find(character) != std::string_view::npos;
        escaped += isEscaped ? number : std::string{character};
    }
    const BlockDevice device = usesOf("36 35 0:99 / " + escaped + " rw - vfat none rw,uhelper=udisks2\n", "");
    if (device.mounts.size() != 1 || device.mounts[0].target != folder) std::abort();
    return 0;
}
