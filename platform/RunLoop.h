#pragma once

#include <deque>

#include "foundation/Mutex.h"
#include "platform/concurrency/Task.h"

namespace tessel {

/// Serves as the main thread of a program without a window: the thread that calls run(). Work posted while no
/// thread is in run() waits for the next call.
class RunLoop : public MainThread {
  public:
    void post(std::function<void()> work) override;

    /// Runs what is posted until stop() is called, and sleeps while there is nothing to do.
    void run();

    /// Makes run() return after the work in hand. May be called on any thread, even before run().
    void stop();

  private:
    Mutex mutex;
    std::condition_variable_any changed;
    std::deque<std::function<void()>> pending __attribute__((guarded_by(mutex)));
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
