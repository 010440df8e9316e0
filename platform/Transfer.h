#pragma once

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "foundation/Errors.h"
#include "platform/SystemResult.h"

namespace tessel {

/// Thrown where a device or a file did not transfer all the bytes that it was asked to. The code is 0 where
/// the device or file has ended, and EOVERFLOW where the system can't address the offset.
class TransferError : public PlatformError {
  public:
    TransferError(int code, uint64_t offset) :
        PlatformError(code, "Not all bytes could be transferred: " + systemErrorText(code) + "."),
        failedOffset(offset) {}

    /// Returns the offset of the call that moved nothing, in bytes.
    [[nodiscard]] uint64_t offset() const { return failedOffset; }

  private:
    uint64_t failedOffset;
};

/// Repeats a call that may be interrupted or move only some of the bytes, until all of them are transferred.
/// The call takes the bytes that are left and the offset where they belong. Throws TransferError.
template <typename Span, typename Call>
void transferFully(Span bytes, uint64_t offset, Call transferSome) {
    while (!bytes.empty()) {
        if (offset > static_cast<uint64_t>(std::numeric_limits<int64_t>::max()))
            throw TransferError(EOVERFLOW, offset);
        const SystemResult moved = transferSome(bytes, offset);
        if (moved.isInterrupted()) continue;
        if (!moved.isSuccess() || moved.value == 0) throw TransferError(moved.error, offset);
        bytes = bytes.subspan(static_cast<size_t>(moved.value));
        offset += moved.value;
    }
}

}  // namespace tessel
