#pragma once

#include <chrono>
#include <functional>
#include <thread>
#include <type_traits>

#include "platform/concurrency/Task.h"

namespace tessel {

/// Runs the work, which must not throw, on a new thread. Throws PlatformError when the system allows no more.
[[nodiscard]] std::thread startThread(std::function<void()> work);

namespace detail {

template <typename Function>
struct [[nodiscard]] BackgroundCall {
    using Result = std::invoke_result_t<Function&, std::stop_token>;

    Function function;
    std::optional<Outcome<Result>> outcome = std::nullopt;

    bool await_ready() const noexcept { return false; }
    Result await_resume() { return std::move(*outcome).value(); }

    template <typename Promise>
    void await_suspend(std::coroutine_handle<Promise> task) {
        startThread([this, context = task.promise().context, task] {
            outcome.emplace(Outcome<Result>::of([&] { return function(context.cancellation); }));
            context.mainThread->post([task] { task.resume(); });
        }).detach();
    }
};

}  // namespace detail

/// To be awaited: runs a blocking function on a thread of its own, hands it the waiter's stop token, and
/// comes back with its value or error. Never cut short: the function itself looks at the token where it may
/// stop. Every call has its own thread, since a fixed pool could deadlock on calls that wait for each other.
template <typename Function>
detail::BackgroundCall<Function> inBackground(Function function) {
    return {std::move(function)};
}

/// For blocking functions: throws CancellationError when a stop was requested.
void checkCancellation(const std::stop_token& stop);

/// For blocking functions: waits that long, and ends early with CancellationError when a stop is requested.
void sleepFor(std::chrono::nanoseconds duration, const std::stop_token& stop);

/// The same for tasks.
Task<> checkCancellation();
Task<> sleepFor(std::chrono::nanoseconds duration);

/// Whether the current task was cancelled.
Task<bool> isCancelled();

}  // namespace tessel
