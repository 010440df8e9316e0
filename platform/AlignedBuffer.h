#pragma once

#include <cstddef>
#include <memory>
#include <new>
#include <span>

namespace tessel {

/// Memory for uncached transfers. It is zero-filled at first, aligned as devices need it, and physically
/// contiguous where the system has such memory to spare, so that a device receives a few long pieces instead
/// of thousands of short ones.
class AlignedBuffer {
  public:
    /// Allocates that many bytes. Throws std::bad_alloc.
    AlignedBuffer(size_t size, std::align_val_t alignment);

    [[nodiscard]] std::span<std::byte> first(size_t count) const {
        return std::span(memory.get(), byteCount).first(count);
    }

  private:
    struct Release {
        std::align_val_t alignment;
        void operator()(std::byte* bytes) const { ::operator delete(bytes, alignment); }
    };

    std::unique_ptr<std::byte, Release> memory;
    size_t byteCount;
};

}  // namespace tessel
