#pragma once

#include <coroutine>
#include <memory>
#include <optional>
#include <stop_token>
#include <utility>

#include "platform/concurrency/MainThread.h"
#include "platform/concurrency/Outcome.h"

/// How work waits.
///
/// A Task is a coroutine that starts when it is awaited. All of its steps run on the main thread, and it can
/// be cancelled; a task that is awaited inherits both from its waiter. Whatever blocks is an ordinary
/// function that runs on a thread of its own while a task waits for it: see inBackground().
///
/// Cancelling is cooperative: a cancelled task learns of it from checkCancellation(), isCancelled() or an
/// interrupted sleepFor(), and from nothing else. Waiting for work that was begun is never cut short.
///
/// A lambda that is a coroutine must not capture: the captures would die before it ends. Pass parameters.
namespace tessel {

/// What an awaited task inherits.
struct TaskContext {
    std::shared_ptr<MainThread> mainThread;
    std::stop_token cancellation;
};

namespace detail {

/// Awaited by every task as its last step: its waiter goes on. A task that nobody waits for frees itself.
struct Finish {
    bool await_ready() const noexcept { return false; }
    void await_resume() const noexcept {}

    template <typename Promise>
    std::coroutine_handle<> await_suspend(std::coroutine_handle<Promise> task) const noexcept {
        if (const auto waiter = task.promise().waiter) return waiter;
        // An error that nobody can learn of is a fault of the program.
        if (task.promise().outcome->error()) std::terminate();
        task.destroy();
        return std::noop_coroutine();
    }
};

template <typename T>
struct PromiseBase {
    std::suspend_always initial_suspend() const noexcept { return {}; }
    Finish final_suspend() const noexcept { return {}; }
    void unhandled_exception() { outcome.emplace(std::current_exception()); }

    TaskContext context;
    std::coroutine_handle<> waiter;  ///< null when nobody waits
    std::optional<Outcome<T>> outcome;
};

template <typename T>
struct Promise : PromiseBase<T> {
    void return_value(T value) { this->outcome.emplace(std::move(value)); }
};

template <>
struct Promise<void> : PromiseBase<void> {
    void return_void() { outcome.emplace(std::monostate()); }
};

}  // namespace detail

/// Work that starts when it is awaited, which may happen once. The awaiting expression gives its value or
/// throws its error. Whoever holds the Task owns the coroutine and must not drop it while it runs.
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
    void operator co_await() & = delete;  // awaited twice, it would go on after its end

    bool await_ready() const noexcept { return false; }

    template <typename WaiterPromise>
    std::coroutine_handle<> await_suspend(std::coroutine_handle<WaiterPromise> waiter) {
        coroutine.promise().context = waiter.promise().context;
        coroutine.promise().waiter = waiter;
        return coroutine;
    }

    T await_resume() { return std::move(*coroutine.promise().outcome).value(); }

    /// Has the main thread start the task, with nobody waiting for it. The task must not throw.
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

/// The value or error of a task as a value, since nothing can be awaited in a catch handler: clean-up that
/// waits is written after it.
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

/// A task that was started on its own. Nobody can wait for it: what it has to tell, it tells at its end.
/// Handles may be copied and dropped freely, which does not cancel the task.
class TaskHandle {
  public:
    explicit TaskHandle(std::stop_source cancellation) : cancellation(std::move(cancellation)) {}

    bool operator==(const TaskHandle&) const = default;

    /// Asks the task to stop, which it does at its next checkpoint. May be called on any thread.
    void cancel() { cancellation.request_stop(); }

  private:
    std::stop_source cancellation;
};

/// Has the main thread start a task that can be cancelled on its own. The task must not throw.
inline TaskHandle startTask(std::shared_ptr<MainThread> mainThread, Task<> task) {
    const std::stop_source cancellation;
    std::move(task).detach({std::move(mainThread), cancellation.get_token()});
    return TaskHandle(cancellation);
}

}  // namespace tessel
