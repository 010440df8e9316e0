#include <cstdio>
#include <cstdlib>

#include "tests/support/MountTables.h"

using namespace tessel;

namespace {

/// Returns the uses of a device that stands for all devices that this computer lacks.
KernelDevice usesOf(const std::string& mounts, const std::string& swaps) {
    DiskSnapshot snapshot{.devices = {KernelDevice{}}};
    addUses(snapshot, mounts, swaps);
    return snapshot.devices[0];
}

}  // namespace

/// Checks that any tables are read, and that each folder that the kernel can name keeps its name.
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
    const KernelDevice device =
        usesOf("36 35 0:99 / " + escaped + " rw - vfat none rw,uhelper=udisks2\n", "");
    if (device.mounts.size() != 1 || device.mounts[0].target != folder) std::abort();
    return 0;
}
