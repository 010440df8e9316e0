#include "platform/AlignedBuffer.h"

namespace tessel {

AlignedBuffer::AlignedBuffer(size_t size, std::align_val_t alignment) :
    memory(static_cast<std::byte*>(::operator new(size, alignment)), Release{alignment}),
    byteCount(size) {
    std::uninitialized_value_construct_n(memory.get(), size);
}

}  // namespace tessel
