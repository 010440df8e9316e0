#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <thread>
#include <type_traits>

#include "platform/concurrency/Task.h"

namespace tessel {

/// Runs the work, which must not throw, on a new thread. Throws PlatformError if no thread can be started.
[[nodiscard]] std::thread startThread(std::function<void()> work);

namespace detail {

template <typename Function>
struct [[nodiscard]] BackgroundCall {
    using Result = std::invoke_result_t<Function&, std::stop_token>;

    Function function;
    Outcome<Result> outcome = {};

    bool await_ready() const noexcept { return false; }
    Result await_resume() { return std::move(outcome).value(); }

    template <typename Promise>
    void await_suspend(std::coroutine_handle<Promise> task) {
        startThread([this, context = task.promise().context, task] {
            outcome = Outcome<Result>::of([&] { return function(context.cancellation); });
            context.mainThread->post([task] { task.resume(); });
        }).detach();
    }
};

}  // namespace detail

/// Runs a blocking function on a thread of its own, hands it the waiter's stop token, and resumes with its
/// value or error. The wait is never cut short: the function itself checks the token where it may stop. Each
/// call has its own thread, since a fixed pool could deadlock on calls that wait for each other.
template <typename Function>
detail::BackgroundCall<Function> inBackground(Function function) {
    return {std::move(function)};
}

/// Throws CancellationError if a stop was requested. Meant for blocking functions.
void checkCancellation(const std::stop_token& stop);

/// Sleeps that long, or throws CancellationError as soon as a stop is requested. Meant for blocking
/// functions.
void sleepFor(std::chrono::nanoseconds duration, const std::stop_token& stop);

namespace detail {

/// Resumes at once with the context of the current task.
struct [[nodiscard]] CurrentContext {
    TaskContext context = {};

    bool await_ready() const noexcept { return false; }
    template <typename Promise>
    bool await_suspend(std::coroutine_handle<Promise> task) {
        context = task.promise().context;
        return false;
    }
    TaskContext await_resume() { return std::move(context); }
};

struct [[nodiscard]] CancellationCheck : CurrentContext {
    void await_resume() const { tessel::checkCancellation(context.cancellation); }
};

struct [[nodiscard]] CancellationQuestion : CurrentContext {
    bool await_resume() const { return context.cancellation.stop_requested(); }
};

/// Resumes after the duration, or as soon as a stop is requested.
class [[nodiscard]] Sleep {
  public:
    explicit Sleep(std::chrono::nanoseconds duration) : duration(duration) {}

    bool await_ready() const noexcept { return false; }
    template <typename Promise>
    void await_suspend(std::coroutine_handle<Promise> task) {
        begin(task.promise().context, task);
    }
    void await_resume() {
        wakeUp.reset();
        tessel::checkCancellation(cancellation);
    }

  private:
    void begin(const TaskContext& context, std::coroutine_handle<> task);

    std::chrono::nanoseconds duration;
    std::stop_token cancellation;
    std::optional<std::stop_callback<std::function<void()>>> wakeUp;
};

}  // namespace detail

/// Throws CancellationError if the current task was cancelled. In the same way, sleepFor() ends early.
inline detail::CancellationCheck checkCancellation() {
    return {};
}
inline detail::Sleep sleepFor(std::chrono::nanoseconds duration) {
    return detail::Sleep(duration);
}

/// Returns whether the current task was cancelled.
inline detail::CancellationQuestion isCancelled() {
    return {};
}

/// Returns the main thread and the cancellation of the current task.
inline detail::CurrentContext currentContext() {
    return {};
}

}  // namespace tessel
