#pragma once

#include <functional>
#include <memory>

#include "platform/concurrency/Executor.h"

namespace tessel {

/// The thread of Qt's event loop, on which it is to be made. Nothing runs before the loop does. What was
/// posted is also destroyed there, whoever posted it, unless it comes after the end of the application: then
/// nothing becomes of it. Needs a QCoreApplication.
class QtMainThread : public Executor {
  public:
    QtMainThread();
    ~QtMainThread() override;

    void post(std::function<void()> work) override;

  private:
    struct Inbox;
    class Receiver;
    std::shared_ptr<Inbox> inbox;
};

/// Handles the events of Qt's event loop, on its thread, where the loop itself no longer runs.
void handleEventsUntil(const std::function<bool()>& isOver);

}  // namespace tessel
