#include "model/SizeOrUnknown.h"

#include "foundation/ByteCount.h"

namespace tessel {

std::string sizeOrUnknown(uint64_t bytes) {
    return bytes == 0 ? "Unknown size" : byteCountText(bytes);
}

}  // namespace tessel
