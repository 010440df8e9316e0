#pragma once

#include <cstdint>
#include <limits>

#include "model/TesselError.h"
#include "platform/SystemResult.h"

namespace tessel {

/// Repeats a call that may be interrupted or move only some of the bytes, until all of them are transferred.
/// `transfer` takes the bytes that are left and the offset where they belong; `failure` makes the error for a
/// call that moved nothing, from its answer and its offset. Also throws TesselError if an offset is beyond
/// what the system can address.
template <typename Span, typename Call, typename Failure>
void transferFully(Span bytes, uint64_t offset, Call transfer, Failure failure) {
    while (!bytes.empty()) {
        if (offset > static_cast<uint64_t>(std::numeric_limits<int64_t>::max())) {
            throw TesselError::commandFailed("The requested raw-device offset exceeds the supported range.");
        }
        const SystemResult moved = transfer(bytes, offset);
        if (moved.isInterrupted()) continue;
        if (!moved.isSuccess() || moved.value == 0) throw failure(moved, offset);
        bytes = bytes.subspan(static_cast<size_t>(moved.value));
        offset += moved.value;
    }
}

}  // namespace tessel
