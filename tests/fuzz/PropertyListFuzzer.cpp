#include <sys/mman.h>

#include <algorithm>
#include <cstdlib>

#include "foundation/Errors.h"
#include "foundation/PropertyList.h"

using namespace tessel;

namespace {

/// Copies the bytes to the end of an area behind which nothing can be read, since the library that reads them
/// is not instrumented.
std::string_view atTheEdge(const uint8_t* bytes, size_t size) {
    constexpr size_t pageSize = 4096, roomSize = 1 << 20;
    static char* const room = static_cast<char*>(
        mmap(nullptr, roomSize + pageSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
    static const bool isEnclosed = mprotect(room + roomSize, pageSize, PROT_NONE) == 0;
    if (!isEnclosed || size > roomSize) std::abort();
    char* const copy = room + roomSize - size;
    std::copy_n(bytes, size, copy);
    return {copy, size};
}

}  // namespace

/// Checks that any bytes are read or refused, and that what was read survives being written and read again.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
    PropertyList value;
    try {
        value = parsePropertyList(atTheEdge(bytes, size));
    } catch (const PlatformError&) {
        return 0;
    }
    const std::string xml = propertyListXML(value);
    if (propertyListXML(parsePropertyList(xml)) != xml) std::abort();
    return 0;
}
