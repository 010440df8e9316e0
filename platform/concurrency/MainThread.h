#pragma once

#include <chrono>
#include <functional>
#include <future>
#include <memory>
#include <utility>

namespace tessel {

/// Runs the program's coroutines on the one thread that owns its state: the thread of the window's event
/// loop, or of a plain loop where there is no window.
class MainThread {
  public:
    virtual ~MainThread() = default;

    /// Runs the work on the main thread, after everything posted earlier and never within this call. Drops
    /// work that is posted once the main thread has ended. May be called on any thread.
    virtual void post(std::function<void()> work) = 0;

    /// Runs the work likewise once the delay has passed. May be called on the main thread only.
    virtual void postAfter(std::chrono::nanoseconds delay, std::function<void()> work) = 0;

    /// Runs the work on the main thread, waits for it, and throws what it threw; throws std::future_error if
    /// the main thread ended first. May be called on any other thread.
    void call(std::function<void()> work) {
        auto task = std::make_shared<std::packaged_task<void()>>(std::move(work));
        auto end = task->get_future();
        post([task = std::move(task)] { (*task)(); });
        end.get();
    }
};

}  // namespace tessel
