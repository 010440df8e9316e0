#pragma once

#include <functional>
#include <memory>
#include <thread>

namespace tessel {

/// A thread that does the same work each time it is told to, while its owner goes on. It exists from the
/// beginning, so that nothing has to be acquired later. The owner is one thread.
class HelperThread {
  public:
    /// Throws PlatformError when the system allows no more threads. The work may throw.
    explicit HelperThread(std::function<void()> work);
    HelperThread(const HelperThread&) = delete;
    HelperThread& operator=(const HelperThread&) = delete;
    /// Leaves work that is not done yet behind, together with what the work owns.
    ~HelperThread();

    /// Has the work done once. The last one must have been waited for.
    void begin();

    /// Waits until the work that was begun is done. Returns at once when there is none.
    void wait();

    /// Waits, and throws what the work threw.
    void finish();

  private:
    struct Shared;
    std::shared_ptr<Shared> shared;
    std::thread thread;
};

}  // namespace tessel
