#pragma once

#include <sys/mman.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <new>
#include <span>

namespace tessel {

/// Memory for uncached transfers: zero-filled at first and aligned as devices want it. In huge pages where
/// the kernel has them to spare: the device then gets a few long pieces instead of thousands of short ones.
class AlignedBuffer {
  public:
    /// The alignment is a power of two, in bytes.
    AlignedBuffer(size_t size, size_t alignment) :
        memory(static_cast<std::byte*>(::operator new(size, align(alignment))), Release{align(alignment)}),
        byteCount(size) {
        madvise(memory.get(), size, MADV_HUGEPAGE);
        std::uninitialized_value_construct_n(memory.get(), size);
    }

    std::span<std::byte> first(size_t count) const { return std::span(memory.get(), byteCount).first(count); }

  private:
    static constexpr size_t hugePage = 2 * 1024 * 1024;

    static std::align_val_t align(size_t alignment) {
        return std::align_val_t(std::max(alignment, hugePage));
    }

    struct Release {
        std::align_val_t alignment;
        void operator()(std::byte* bytes) const { ::operator delete(bytes, alignment); }
    };

    std::unique_ptr<std::byte, Release> memory;
    size_t byteCount;
};

}  // namespace tessel
