#include <cstdlib>
#include <sstream>

#include "utilities/linux/system/DeviceLocks.h"

/// Checks that only words of the kernel's table of locks are taken for files, whatever it holds.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
    const std::string text(reinterpret_cast<const char*>(bytes), size);
    std::istringstream table(text);
    for (const auto& file : tessel::lockedFiles(table, 0))
        if (text.find(file) == std::string::npos) std::abort();
    return 0;
}
