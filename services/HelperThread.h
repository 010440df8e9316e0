#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <stop_token>
#include <thread>
#include <type_traits>
#include <utility>

#include "platform/concurrency/Outcome.h"

namespace tessel {

/// Does the same work on a thread of its own each time it is told to, while its owner goes on. The thread
/// exists from the beginning, so that nothing has to be acquired later. A single thread owns it.
class HelperThread {
  public:
    /// Starts the thread. Throws PlatformError if the system allows no more threads. The work may throw.
    explicit HelperThread(std::function<void()> work);
    HelperThread(const HelperThread&) = delete;
    HelperThread& operator=(const HelperThread&) = delete;
    /// Leaves everything that the work owns to the thread, together with the work if it is unfinished.
    ~HelperThread();

    /// Begins the work. Requires: any work begun earlier has been waited for.
    void begin();

    /// Waits until the work is done; returns at once when none was begun. Throws CancellationError as soon as
    /// a stop is requested, whether or not the work is done.
    void wait(const std::stop_token& stop = {});

    /// Waits that long at most, whether or not a stop is requested. Returns whether the work is done.
    [[nodiscard]] bool isDoneWithin(std::chrono::milliseconds duration);

    /// Waits until the work is done or a stop is requested, and throws what the work threw.
    void finish(const std::stop_token& stop = {});

  private:
    struct Shared;
    std::shared_ptr<Shared> shared;
    std::thread thread;
};

/// Calls a blocking function that may never return, for instance because a disk hangs, in such a way that a
/// stop ends the call. The function runs on a thread of its own; the result waits for it and returns or
/// throws what it does, or throws CancellationError as soon as a stop is requested. The function is then left
/// behind. Requires: it owns everything that it uses.
template <typename Function>
auto interruptible(Function function) {
    return [function = std::move(function)](const std::stop_token& stop) {
        using Result = std::invoke_result_t<const Function&>;
        const auto outcome = std::make_shared<Outcome<Result>>();
        HelperThread helper([outcome, function] { *outcome = Outcome<Result>::of(function); });
        helper.begin();
        helper.wait(stop);
        // The thread must not be the last to release an error.
        return std::exchange(*outcome, {}).value();
    };
}

}  // namespace tessel
