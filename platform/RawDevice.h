#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <span>
#include <utility>

#include "foundation/Errors.h"
#include "platform/FileDescriptor.h"
#include "platform/SystemResult.h"

namespace tessel {

/// What has happened to a medium since its device was opened.
enum class Disturbance {
    none,
    exchanged,          ///< another medium has taken its place
    possiblyExchanged,  ///< the computer was asleep, when readers do not notice an exchange
    writtenByOthers,    ///< another program has written to it
};

/// Thrown where the medium of a device was disturbed.
class DisturbedMediumError : public Error {
  public:
    explicit DisturbedMediumError(Disturbance found) : Error("The medium was disturbed."), found(found) {}

    [[nodiscard]] Disturbance disturbance() const { return found; }

  private:
    Disturbance found;
};

/// An open device that is read and written past every cache. Calls block; buffers, offsets and lengths must
/// be aligned to the block size. Destroying the device closes it.
class RawDevice {
  public:
    virtual ~RawDevice() = default;

    virtual SystemResult blockSize() = 0;   ///< returns the size of a logical block in bytes
    virtual SystemResult blockCount() = 0;  ///< returns the size of the medium in logical blocks

    /// Makes sure that from now on nothing is read from, or kept in, the system's cache.
    virtual SystemResult disableCaching() = 0;

    /// Writes all the bytes. Throws TransferError, and DisturbedMediumError before any byte goes to a medium
    /// that was disturbed.
    void write(std::span<const std::byte> bytes, uint64_t offset);
    /// Fills the span. Throws as write() does.
    void read(std::span<std::byte> bytes, uint64_t offset);

    /// Waits until the medium itself holds everything that was written.
    virtual SystemResult synchronize() = 0;

    /// Returns what has happened to the medium since the device was opened. Once there is no medium, it
    /// counts as exchanged, or else every read and write fails.
    [[nodiscard]] virtual Disturbance disturbance() = 0;

    /// Throws DisturbedMediumError unless the medium is undisturbed.
    void requireUndisturbed();

  protected:
    /// Makes a single system call, which may be interrupted or move only some of the bytes. So does
    /// readSome().
    virtual SystemResult writeSome(std::span<const std::byte> bytes, uint64_t offset) = 0;
    virtual SystemResult readSome(std::span<std::byte> bytes, uint64_t offset) = 0;
};

/// The functions that are the same for every device with a descriptor; derived classes add the rest.
class DescriptorDevice : public RawDevice {
  public:
    explicit DescriptorDevice(FileDescriptor descriptor) : descriptor(std::move(descriptor)) {}

    SystemResult synchronize() override;

  protected:
    SystemResult writeSome(std::span<const std::byte> bytes, uint64_t offset) override;
    SystemResult readSome(std::span<std::byte> bytes, uint64_t offset) override;

    FileDescriptor descriptor;
};

/// Makes a device from an open descriptor, which the device then owns.
using RawDeviceFactory = std::function<std::unique_ptr<RawDevice>(FileDescriptor)>;

}  // namespace tessel
