#pragma once

#include <utility>

namespace tessel {

/// Owns an open descriptor and closes it exactly once.
class FileDescriptor {
  public:
    FileDescriptor() = default;
    explicit FileDescriptor(int descriptor) : descriptor(descriptor) {}
    FileDescriptor(FileDescriptor&& other) noexcept : descriptor(std::exchange(other.descriptor, none)) {}
    FileDescriptor& operator=(FileDescriptor other) noexcept {
        std::swap(descriptor, other.descriptor);
        return *this;
    }
    ~FileDescriptor() { close(); }

    [[nodiscard]] bool isOpen() const { return descriptor >= 0; }
    [[nodiscard]] int get() const { return descriptor; }
    void close();

  private:
    static constexpr int none = -1;
    int descriptor = none;
};

}  // namespace tessel
