#pragma once

#include <condition_variable>
#include <map>
#include <memory>
#include <utility>

#include "foundation/Mutex.h"
#include "platform/concurrency/Task.h"

namespace tessel {

/// Serves as the main thread of a program without a window: the thread that calls run(). Work posted while no
/// thread is in run() waits for the next call.
class RunLoop : public MainThread {
  public:
    // A thread that posts may have a clock that is ahead of this loop's in a test.
    void post(std::function<void()> work) override { put({}, std::move(work)); }

    void postAfter(std::chrono::nanoseconds delay, std::function<void()> work) override {
        put(Clock::now() + delay, std::move(work));
    }

    /// Runs what is posted until stop() is called, and sleeps while there is nothing to do.
    void run() {
        while (const auto work = next())
            work();
    }

    /// Makes run() return after its current work. May be called on any thread, even before run().
    void stop() {
        const MutexLock lock(mutex);
        isStopped = true;
        changed.notify_one();
    }

  private:
    using Clock = std::chrono::steady_clock;

    void put(Clock::time_point due, std::function<void()> work) {
        const MutexLock lock(mutex);
        pending.emplace(due, std::move(work));
        changed.notify_one();
    }

    /// Waits for work that is due. Returns nothing once the loop is stopped.
    std::function<void()> next() {
        MutexLock lock(mutex);
        for (;;) {
            if (std::exchange(isStopped, false)) return nullptr;
            if (pending.empty()) {
                lock.wait(changed);
            } else if (const auto due = pending.begin()->first; due <= Clock::now()) {
                return std::move(pending.extract(pending.begin()).mapped());
            } else {
                lock.waitUntil(changed, due);
            }
        }
    }

    Mutex mutex;
    std::condition_variable_any changed;
    /// The work by its due time; work for the same time is in the order in which it was posted.
    std::multimap<Clock::time_point, std::function<void()>> pending __attribute__((guarded_by(mutex)));
    bool isStopped __attribute__((guarded_by(mutex))) = false;
};

/// Makes the calling thread the main thread until the task has ended, and returns its value or throws its
/// error.
template <typename T>
T runUntilFinished(const std::shared_ptr<RunLoop>& loop, Task<T> task,
                   const std::stop_source& cancellation = {}) {
    Outcome<T> outcome;
    const auto finish = [](Task<T> work, Outcome<T>& result, RunLoop& stopped) -> Task<> {
        result = co_await outcomeOf(std::move(work));
        stopped.stop();
    };
    finish(std::move(task), outcome, *loop).detach({loop, cancellation.get_token()});
    loop->run();
    return std::move(outcome).value();
}

}  // namespace tessel
