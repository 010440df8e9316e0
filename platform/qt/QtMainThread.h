#pragma once

#include <functional>
#include <memory>

#include "platform/concurrency/MainThread.h"

namespace tessel {

/// Runs work on the thread of Qt's event loop, which must also create this object. No work is done before the
/// loop runs. Work is destroyed on that thread too, whoever posted it; work that is posted after the end of
/// the application is dropped at once. Needs a QCoreApplication.
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

/// Handles the events of Qt's event loop until the condition holds. Call it on the loop's thread, where the
/// loop itself does not run.
void handleEventsUntil(const std::function<bool()>& isOver);

}  // namespace tessel
