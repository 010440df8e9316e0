#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <stop_token>
#include <thread>

namespace tessel {

/// Does the same work on a thread of its own each time it is told to, while its owner goes on. The thread
/// exists from the beginning, so that nothing has to be acquired later. A single thread owns it.
class HelperThread {
  public:
    /// Starts the thread. Throws PlatformError if the system allows no more threads. The work may throw.
    explicit HelperThread(std::function<void()> work);
    HelperThread(const HelperThread&) = delete;
    HelperThread& operator=(const HelperThread&) = delete;
    /// Leaves everything that the work owns to the thread, together with the work if it is unfinished.
    ~HelperThread();

    /// Begins the work. Any work begun earlier must have been waited for.
    void begin();

    /// Waits until the work is done; returns at once when none was begun. Throws CancellationError as soon as
    /// a stop is requested, whether or not the work is done.
    void wait(const std::stop_token& stop = {});

    /// Waits that long at most, whether or not a stop is requested. Returns whether the work is done.
    [[nodiscard]] bool isDoneWithin(std::chrono::milliseconds duration);

    /// Waits until the work is done or a stop is requested, and throws what the work threw.
    void finish(const std::stop_token& stop = {});

  private:
    struct Shared;
    std::shared_ptr<Shared> shared;
    std::thread thread;
};

}  // namespace tessel
