#include <cstdlib>

#include "foundation/Errors.h"
#include "foundation/PropertyList.h"

/// Whatever the bytes are, they are read or refused, and what was read survives being written.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
    try {
        const auto value = tessel::parsePropertyList({reinterpret_cast<const char*>(bytes), size});
        if (tessel::propertyListXML(value).empty()) std::abort();
    } catch (const tessel::PlatformError&) {
    }
    return 0;
}
