#pragma once

#include <functional>
#include <future>
#include <memory>
#include <utility>

namespace tessel {

/// The thread that owns the program's state and runs its coroutines: the window's event loop, or a RunLoop
/// where there is no window.
class MainThread {
  public:
    virtual ~MainThread() = default;

    /// Has the work done on the main thread, after everything posted before and never before this returns.
    /// What comes after the end of the main thread is dropped. May be called on any thread.
    virtual void post(std::function<void()> work) = 0;

    /// Has the work done on the main thread, waits for it and throws what it threw; std::future_error when
    /// the main thread ended first. May be called on any other thread.
    void call(std::function<void()> work) {
        auto task = std::make_shared<std::packaged_task<void()>>(std::move(work));
        auto end = task->get_future();
        post([task = std::move(task)] { (*task)(); });
        end.get();
    }
};

}  // namespace tessel
