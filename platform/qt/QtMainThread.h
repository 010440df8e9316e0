#pragma once

#include "platform/concurrency/Executor.h"

namespace tessel {

/// The thread of Qt's event loop, on which it is to be made. Nothing runs before the loop does. What was
/// posted is also destroyed there, whoever posted it. Needs a QCoreApplication.
class QtMainThread : public Executor {
  public:
    QtMainThread();
    ~QtMainThread() override;

    void post(std::function<void()> work) override;

  private:
    class Receiver;
    Receiver* receiver;  ///< lives on the event loop's thread, and is deleted there
};

}  // namespace tessel
