#include <sys/socket.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "platform/DescriptorChannel.h"

namespace {

/// Returns whether a rights header stands right before this descriptor anywhere in the data.
bool holdsRightsTo(int descriptor, std::span<const std::byte> data) {
    for (size_t offset = 0; offset + CMSG_LEN(sizeof descriptor) <= data.size(); offset += CMSG_ALIGN(1)) {
        cmsghdr header{};
        int value = 0;
        std::memcpy(&header, data.data() + offset, sizeof header);
        std::memcpy(&value, data.data() + offset + CMSG_LEN(0), sizeof value);
        if (header.cmsg_level == SOL_SOCKET && header.cmsg_type == SCM_RIGHTS && value == descriptor)
            return true;
    }
    return false;
}

}  // namespace

/// Checks that no bytes outside the message are read, and that a descriptor comes only from a rights entry.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
    const auto data = std::as_bytes(std::span(bytes, size));
    const auto descriptor = tessel::findDescriptor(data);
    if (descriptor && !holdsRightsTo(*descriptor, data)) std::abort();
    return 0;
}
