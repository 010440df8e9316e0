#pragma once

#include <condition_variable>
#include <deque>
#include <mutex>

#include "platform/concurrency/Executor.h"

namespace tessel {

/// An executor for a thread that has nothing else to do: whoever calls run() is that thread.
class RunLoop : public Executor {
  public:
    void post(std::function<void()> work) override;

    /// Runs posted work until stop() is called, sleeping while there is none.
    void run();

    /// Makes run() return after the work in hand. May be called on any thread, also before run().
    void stop();

  private:
    std::mutex mutex;
    std::condition_variable changed;
    std::deque<std::function<void()>> pending;
    bool isStopped = false;
};

}  // namespace tessel
