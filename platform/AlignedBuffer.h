#pragma once

#include <cstddef>
#include <memory>
#include <new>
#include <span>

namespace tessel {

/// Memory for uncached transfers: zero-filled at first and aligned as devices want it.
class AlignedBuffer {
  public:
    /// The alignment is a power of two, in bytes.
    AlignedBuffer(size_t size, size_t alignment) :
        memory(static_cast<std::byte*>(::operator new(size, std::align_val_t(alignment))),
               Release{alignment}),
        byteCount(size) {
        std::uninitialized_value_construct_n(memory.get(), size);
    }

    std::span<std::byte> first(size_t count) const { return std::span(memory.get(), byteCount).first(count); }

  private:
    struct Release {
        size_t alignment;
        void operator()(std::byte* bytes) const { ::operator delete(bytes, std::align_val_t(alignment)); }
    };

    std::unique_ptr<std::byte, Release> memory;
    size_t byteCount;
};

}  // namespace tessel
