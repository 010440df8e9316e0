#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <type_traits>

#include "platform/concurrency/Task.h"
#include "platform/concurrency/Threads.h"

namespace tessel {

namespace detail {

/// To be awaited: runs the work on a thread of its own and comes back.
struct OnOwnThread {
    Priority priority;
    std::function<void()> work;

    bool await_ready() const noexcept { return false; }
    void await_resume() const noexcept {}

    template <typename Promise>
    void await_suspend(std::coroutine_handle<Promise> task) {
        startThread(priority, [work = std::move(work), home = task.promise().context.home, task] {
            work();
            home->post([task] { task.resume(); });
        });
    }
};

}  // namespace detail

/// Runs a blocking function on a thread of its own and comes back with its value or error. Every call has its
/// own thread: a fixed pool could deadlock on calls that wait for each other. Never cut short.
template <typename Function, typename Result = std::invoke_result_t<Function&>>
Task<Result> inBackground(Priority priority, Function function) {
    std::optional<Outcome<Result>> outcome;
    co_await detail::OnOwnThread{priority,
                                 [&outcome, &function] { outcome.emplace(Outcome<Result>::of(function)); }};
    co_return std::move(*outcome).value();
}

/// Throws CancellationError when the current task was cancelled.
Task<> checkCancellation();

/// Whether the current task was cancelled.
Task<bool> isCancelled();

/// Waits that long; ends early with CancellationError when the current task is cancelled.
Task<> sleepFor(std::chrono::nanoseconds duration);

}  // namespace tessel
