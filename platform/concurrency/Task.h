#pragma once

#include <coroutine>
#include <memory>
#include <stop_token>
#include <utility>

#include "platform/concurrency/MainThread.h"
#include "platform/concurrency/Outcome.h"

/// A Task is a coroutine that starts when it is awaited. It takes all of its steps on the main thread, and it
/// can be cancelled; a task that is awaited inherits both from its waiter. Blocking work is an ordinary
/// function that runs on a thread of its own while a task waits for it: see inBackground().
///
/// Cancellation is cooperative: a cancelled task notices it only through checkCancellation(), isCancelled()
/// or an interrupted sleepFor(). Waiting for work that has begun is never cut short.
///
/// A coroutine lambda must not capture, since its captures would die before it ends. Pass parameters instead.
namespace tessel {

/// What a task inherits from its waiter.
struct TaskContext {
    std::shared_ptr<MainThread> mainThread;
    std::stop_token cancellation;
};

namespace detail {

/// Ends every task: resumes its waiter, or frees a task that has none.
struct Finish {
    bool await_ready() const noexcept { return false; }
    void await_resume() const noexcept {}

    template <typename Promise>
    std::coroutine_handle<> await_suspend(std::coroutine_handle<Promise> task) const noexcept {
        if (const auto waiter = task.promise().waiter) return waiter;
        // An error without a waiter to receive it is a bug in the program.
        if (task.promise().outcome.error()) std::terminate();
        task.destroy();
        return std::noop_coroutine();
    }
};

template <typename T>
struct PromiseBase {
    std::suspend_always initial_suspend() const noexcept { return {}; }
    Finish final_suspend() const noexcept { return {}; }
    void unhandled_exception() { outcome = std::current_exception(); }

    TaskContext context;
    std::coroutine_handle<> waiter;  ///< null if there is none
    Outcome<T> outcome;
};

template <typename T>
struct Promise : PromiseBase<T> {
    void return_value(T value) { this->outcome = std::move(value); }
};

template <>
struct Promise<void> : PromiseBase<void> {
    void return_void() { outcome = std::monostate(); }
};

}  // namespace detail

/// Work that starts when it is awaited, which may happen only once. Awaiting it returns its value or throws
/// its error. The Task owns the coroutine, and must not be destroyed while it runs.
template <typename T = void>
class [[nodiscard]] Task {
  public:
    struct promise_type : detail::Promise<T> {
        Task get_return_object() { return Task(std::coroutine_handle<promise_type>::from_promise(*this)); }
    };

    Task(Task&& other) noexcept : coroutine(std::exchange(other.coroutine, nullptr)) {}
    Task(const Task&) = delete;
    Task& operator=(Task) = delete;
    ~Task() {
        if (coroutine) coroutine.destroy();
    }

    Task&& operator co_await() && { return std::move(*this); }
    void operator co_await() & = delete;  // awaited twice, it would resume after its end

    bool await_ready() const noexcept { return false; }

    template <typename WaiterPromise>
    std::coroutine_handle<> await_suspend(std::coroutine_handle<WaiterPromise> waiter) {
        coroutine.promise().context = waiter.promise().context;
        coroutine.promise().waiter = waiter;
        return coroutine;
    }

    T await_resume() { return std::move(coroutine.promise().outcome).value(); }

    /// Starts the task on the main thread, without a waiter. Requires: the task does not throw.
    void detach(TaskContext context) && {
        const auto started = std::exchange(coroutine, nullptr);
        const auto mainThread = context.mainThread;
        started.promise().context = std::move(context);
        mainThread->post([started] { started.resume(); });
    }

  private:
    explicit Task(std::coroutine_handle<promise_type> coroutine) : coroutine(coroutine) {}

    std::coroutine_handle<promise_type> coroutine;
};

/// Returns how the task ended as a value. A catch handler can't await anything, so clean-up that has to wait
/// comes after this.
template <typename T>
Task<Outcome<T>> outcomeOf(Task<T> task) {
    try {
        if constexpr (std::is_void_v<T>) {
            co_await std::move(task);
            co_return std::monostate();
        } else {
            co_return co_await std::move(task);
        }
    } catch (...) {
        co_return std::current_exception();
    }
}

/// Cancels a task that was started by startTask(). Such a task has no waiter, so it reports its results
/// before it ends. Handles may be copied and destroyed freely, which does not cancel the task.
class TaskHandle {
  public:
    explicit TaskHandle(std::stop_source cancellation) : cancellation(std::move(cancellation)) {}

    bool operator==(const TaskHandle&) const = default;

    /// Asks the task to stop, which it does at its next checkpoint. May be called on any thread.
    void cancel() { cancellation.request_stop(); }

    [[nodiscard]] bool isCancelled() const { return cancellation.stop_requested(); }

  private:
    std::stop_source cancellation;
};

/// Starts a task on the main thread, and returns the handle that cancels it. Requires: the task does not
/// throw.
inline TaskHandle startTask(std::shared_ptr<MainThread> mainThread, Task<> task) {
    const std::stop_source cancellation;
    std::move(task).detach({std::move(mainThread), cancellation.get_token()});
    return TaskHandle(cancellation);
}

}  // namespace tessel
