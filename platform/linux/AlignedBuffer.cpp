#include "platform/AlignedBuffer.h"

#include <sys/mman.h>

#include <algorithm>

namespace tessel {

namespace {

/// Returns the alignment for huge pages, which the kernel uses only for memory that begins at a multiple of
/// their size.
std::align_val_t hugePageAlignment(std::align_val_t alignment) {
    constexpr std::align_val_t hugePage{2 << 20};
    return std::max(alignment, hugePage);
}

}  // namespace

AlignedBuffer::AlignedBuffer(size_t size, std::align_val_t alignment) :
    memory(static_cast<std::byte*>(::operator new(size, hugePageAlignment(alignment))),
           Release{hugePageAlignment(alignment)}),
    byteCount(size) {
    // This must come before the memory is first touched. Where it is refused, ordinary pages will do.
    madvise(memory.get(), size, MADV_HUGEPAGE);
    std::uninitialized_value_construct_n(memory.get(), size);
}

}  // namespace tessel
