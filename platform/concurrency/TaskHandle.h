#pragma once

#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <utility>
#include <vector>

#include "platform/concurrency/RunLoop.h"
#include "platform/concurrency/Task.h"
#include "platform/concurrency/Threads.h"

namespace tessel {

namespace detail {

/// What a started task and its handles share.
template <typename T>
class TaskState {
  public:
    std::stop_source cancellation;

    void finish(Outcome<T> result) {
        std::vector<std::function<void()>> waiters;
        {
            const std::lock_guard lock(mutex);
            outcome.emplace(std::move(result));
            waiters.swap(finishHandlers);
        }
        for (const auto& resume : waiters)
            resume();
    }

    /// Whether the handler will be called; it is not when the task has finished already.
    bool whenFinished(std::function<void()> handler) {
        const std::lock_guard lock(mutex);
        if (outcome) return false;
        finishHandlers.push_back(std::move(handler));
        return true;
    }

    T takeResult() {
        const std::lock_guard lock(mutex);
        // Moved out, so that an error dies with its last reader and not with this state on another thread.
        auto result = std::move(*outcome);
        return std::move(result).value();
    }

  private:
    std::mutex mutex;
    std::optional<Outcome<T>> outcome;
    std::vector<std::function<void()>> finishHandlers;
};

template <typename T>
struct Finished {
    TaskState<T>& state;
    bool await_ready() const noexcept { return false; }
    void await_resume() const noexcept {}
    template <typename Promise>
    bool await_suspend(std::coroutine_handle<Promise> waiter) {
        const auto home = waiter.promise().context.home;
        return state.whenFinished([home, waiter] { home->post([waiter] { waiter.resume(); }); });
    }
};

template <typename T>
Task<T> resultOf(std::shared_ptr<TaskState<T>> state) {
    co_await Finished<T>{*state};
    co_return state->takeResult();
}

template <typename T>
Task<> deliver(Task<T> task, std::shared_ptr<TaskState<T>> state, std::shared_ptr<RunLoop> loopToStop) {
    // A statement of its own, so that everything of the task is gone when its waiters learn that it ended.
    auto outcome = co_await outcomeOf(std::move(task));
    state->finish(std::move(outcome));
    if (loopToStop) loopToStop->stop();
}

}  // namespace detail

/// A task that was started on its own. Handles may be copied and dropped freely: neither cancels the task.
template <typename T>
class TaskHandle {
  public:
    explicit TaskHandle(std::shared_ptr<detail::TaskState<T>> state) : state(std::move(state)) {}

    /// Whether both are handles of the same task.
    bool operator==(const TaskHandle&) const = default;

    /// Asks the task to stop; it ends at its next checkpoint. May be called on any thread.
    void cancel() const { state->cancellation.request_stop(); }

    /// To be awaited, once: waits for the task to end. Not cut short when the waiter is cancelled.
    Task<T> value() const { return detail::resultOf(state); }

  private:
    std::shared_ptr<detail::TaskState<T>> state;
};

/// The thread on which a started task lives.
class Home {
  public:
    static Home main(MainThread mainThread) { return {std::move(mainThread), false}; }
    /// A new thread that ends with the task.
    static Home background(MainThread mainThread) { return {std::move(mainThread), true}; }

  private:
    Home(MainThread mainThread, bool hasOwnThread) :
        mainThread(std::move(mainThread)),
        hasOwnThread(hasOwnThread) {}

    template <typename T>
    friend TaskHandle<T> startTask(const Home& home, Priority priority, Task<T> task);

    MainThread mainThread;
    bool hasOwnThread;
};

/// Starts a task that is unrelated to the current one: it has its own cancellation token. Throws
/// std::system_error when the system allows no more threads.
template <typename T>
TaskHandle<T> startTask(const Home& home, Priority priority, Task<T> task) {
    auto state = std::make_shared<detail::TaskState<T>>();
    auto ownLoop = home.hasOwnThread ? std::make_shared<RunLoop>() : nullptr;
    TaskContext context{.home = ownLoop ? ownLoop : home.mainThread,
                        .mainThread = home.mainThread,
                        .cancellation = state->cancellation.get_token()};
    auto delivery = detail::deliver(std::move(task), state, ownLoop);
    // The thread comes first: a task that was posted to a loop that nobody runs would never be freed.
    if (ownLoop) startThread(priority, [ownLoop] { ownLoop->run(); });
    std::move(delivery).detach(std::move(context));
    return TaskHandle<T>(std::move(state));
}

/// Waits for a started task to end and hands the waiter's cancellation on to it.
template <typename T>
Task<T> withForwardedCancellation(TaskHandle<T> handle) {
    const auto cancellation = (co_await currentContext()).cancellation;
    const std::stop_callback forward(cancellation, [&handle] { handle.cancel(); });
    co_return co_await handle.value();
}

/// Makes the calling thread the main thread until the task has ended. For programs without a window.
template <typename T>
T runUntilFinished(const std::shared_ptr<RunLoop>& loop, Task<T> task) {
    auto state = std::make_shared<detail::TaskState<T>>();
    detail::deliver(std::move(task), state, loop)
        .detach({.home = loop, .mainThread = loop, .cancellation = state->cancellation.get_token()});
    loop->run();
    return state->takeResult();
}

}  // namespace tessel
