#pragma once

#include <coroutine>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <utility>

#include "platform/concurrency/Executor.h"
#include "platform/concurrency/Outcome.h"

/// How work waits.
///
/// A Task is a coroutine that starts when it is awaited. It has a home, the one thread on which all of its
/// steps run, and a cancellation token. A task that is awaited inherits both. Wherever awaited work was done,
/// the coroutine goes on at its own home.
///
/// Cancelling is cooperative: a cancelled task learns of it from checkCancellation(), isCancelled() or an
/// interrupted sleepFor(), and from nothing else. Waiting for work that was begun is never cut short.
///
/// A lambda that is a coroutine must not capture: the captures would die before it ends. Pass parameters.
namespace tessel {

/// What an awaited task inherits.
struct TaskContext {
    std::shared_ptr<Executor> home;
    MainThread mainThread;
    std::stop_token cancellation;
};

template <typename T>
class Task;

namespace detail {

/// Awaited by every task as its last step: hands over to the waiter.
struct Finish {
    bool await_ready() const noexcept { return false; }
    void await_resume() const noexcept {}

    template <typename Promise>
    std::coroutine_handle<> await_suspend(std::coroutine_handle<Promise> task) const noexcept {
        const auto waiter = task.promise().waiter;
        const auto waiterHome = std::move(task.promise().waiterHome);
        if (!waiter) {
            task.destroy();
            return std::noop_coroutine();
        }
        if (waiterHome == task.promise().context.home) return waiter;
        // From here on the waiter may run at its home and free this task.
        waiterHome->post([waiter] { waiter.resume(); });
        return std::noop_coroutine();
    }
};

struct PromiseBase {
    std::suspend_always initial_suspend() const noexcept { return {}; }
    Finish final_suspend() const noexcept { return {}; }

    TaskContext context;
    std::coroutine_handle<> waiter;  ///< null for a detached task, which frees itself when it ends
    std::shared_ptr<Executor> waiterHome;
};

template <typename T>
class Promise : public PromiseBase {
  public:
    Task<T> get_return_object();
    void return_value(T value) { outcome.emplace(std::move(value)); }
    void unhandled_exception() { outcome.emplace(std::current_exception()); }
    T takeResult() { return std::move(*outcome).value(); }

  private:
    std::optional<Outcome<T>> outcome;
};

template <>
class Promise<void> : public PromiseBase {
  public:
    Task<void> get_return_object();
    void return_void() const {}
    void unhandled_exception() { error = std::current_exception(); }
    void takeResult() const {
        if (error) std::rethrow_exception(error);
    }

  private:
    std::exception_ptr error;
};

}  // namespace detail

/// Work that starts when it is awaited, which may happen once. The awaiting expression gives its value or
/// throws its error. Whoever holds the Task owns the coroutine and must not drop it while it runs.
template <typename T = void>
class [[nodiscard]] Task {
  public:
    using promise_type = detail::Promise<T>;

    explicit Task(std::coroutine_handle<promise_type> coroutine) : coroutine(coroutine) {}
    Task(Task&& other) noexcept : coroutine(std::exchange(other.coroutine, nullptr)) {}
    Task(const Task&) = delete;
    Task& operator=(Task) = delete;
    ~Task() {
        if (coroutine) coroutine.destroy();
    }

    auto operator co_await() && { return Awaiter{coroutine, std::nullopt}; }

    /// To be awaited: runs the task in another context, then comes back.
    auto runIn(TaskContext context) && { return Awaiter{coroutine, std::move(context)}; }

    /// Starts the task at its home, with nobody waiting for it. It must not throw.
    void detach(TaskContext context) && {
        const auto started = std::exchange(coroutine, nullptr);
        const auto home = context.home;
        started.promise().context = std::move(context);
        home->post([started] { started.resume(); });
    }

  private:
    struct Awaiter {
        std::coroutine_handle<promise_type> task;
        std::optional<TaskContext> otherContext;

        bool await_ready() const noexcept { return false; }

        template <typename WaiterPromise>
        std::coroutine_handle<> await_suspend(std::coroutine_handle<WaiterPromise> waiter) {
            const auto started = task;
            auto& promise = started.promise();
            const TaskContext& waiterContext = waiter.promise().context;
            promise.waiter = waiter;
            promise.waiterHome = waiterContext.home;
            promise.context = otherContext ? std::move(*otherContext) : waiterContext;
            if (promise.context.home == waiterContext.home) return started;
            const auto home = promise.context.home;
            home->post([started] { started.resume(); });
            return std::noop_coroutine();
        }

        T await_resume() { return task.promise().takeResult(); }
    };

    std::coroutine_handle<promise_type> coroutine;
};

template <typename T>
Task<T> detail::Promise<T>::get_return_object() {
    return Task<T>(std::coroutine_handle<Promise>::from_promise(*this));
}

inline Task<void> detail::Promise<void>::get_return_object() {
    return Task<void>(std::coroutine_handle<Promise>::from_promise(*this));
}

/// To be awaited: the context of the awaiting task.
struct CurrentContext {
    TaskContext context;

    bool await_ready() const noexcept { return false; }
    template <typename Promise>
    bool await_suspend(std::coroutine_handle<Promise> task) {
        context = task.promise().context;
        return false;
    }
    TaskContext await_resume() { return std::move(context); }
};

inline CurrentContext currentContext() {
    return {};
}

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

/// Runs a task on the main thread and comes back.
template <typename T>
Task<T> onMain(Task<T> task) {
    auto context = co_await currentContext();
    context.home = context.mainThread;
    co_return co_await std::move(task).runIn(std::move(context));
}

}  // namespace tessel
