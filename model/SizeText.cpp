#include "model/SizeText.h"

#include "foundation/ByteCount.h"

namespace tessel {

std::string sizeText(uint64_t bytes) {
    return bytes == 0 ? "Unknown size" : byteCountText(bytes);
}

}  // namespace tessel
