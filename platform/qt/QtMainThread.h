#pragma once

#include <functional>
#include <memory>

#include "platform/concurrency/MainThread.h"

namespace tessel {

/// The thread of Qt's event loop, on which this is to be made. Nothing posted is done before the loop runs.
/// What was posted is destroyed on that thread too, whoever posted it; after the end of the application it is
/// dropped at once. Needs a QCoreApplication.
class QtMainThread : public MainThread {
  public:
    QtMainThread();
    ~QtMainThread() override;

    void post(std::function<void()> work) override;

  private:
    class Inbox;
    class Receiver;
    std::shared_ptr<Inbox> inbox;
};

/// Handles the events of Qt's event loop, on its thread, where the loop itself no longer runs.
void handleEventsUntil(const std::function<bool()>& isOver);

}  // namespace tessel
