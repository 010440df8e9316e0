#pragma once

#include <functional>
#include <memory>

#include "platform/concurrency/MainThread.h"

namespace tessel {

/// Runs work on the thread of Qt's event loop, which must also create this object. No work is done before the
/// loop runs. Work is destroyed on that thread too, whichever thread posted it; work that is posted after the
/// end of the application is destroyed at once. Requires: a QCoreApplication exists.
class QtMainThread : public MainThread {
  public:
    QtMainThread();
    ~QtMainThread() override;

    void post(std::function<void()> work) override;
    void postAfter(std::chrono::nanoseconds delay, std::function<void()> work) override;

  private:
    class Inbox;
    class Receiver;
    std::shared_ptr<Inbox> inbox;
};

/// Handles the events of Qt's event loop until the condition holds. Requires: it is called on the loop's
/// thread, and the loop itself is not running.
void handleEventsUntil(const std::function<bool()>& isOver);

}  // namespace tessel
