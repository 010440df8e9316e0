#pragma once

#include <cerrno>
#include <cstdint>

namespace tessel {

/// The answer of a system call: a value, or the `errno` of its failure.
struct [[nodiscard]] SystemResult {
    uint64_t value = 0;
    int error = 0;

    [[nodiscard]] bool isSuccess() const { return error == 0; }
    [[nodiscard]] bool isInterrupted() const { return error == EINTR; }

    /// Converts an answer by the convention of most calls, where a negative one means a failure that `errno`
    /// explains.
    static SystemResult from(int64_t answer) {
        return answer < 0 ? SystemResult{.error = errno}
                          : SystemResult{.value = static_cast<uint64_t>(answer)};
    }
};

}  // namespace tessel
