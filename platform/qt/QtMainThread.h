#pragma once

#include "platform/concurrency/Executor.h"

namespace tessel {

/// The thread of Qt's event loop. Nothing runs before the loop does. Needs a QCoreApplication.
class QtMainThread : public Executor {
  public:
    void post(std::function<void()> work) override;
};

}  // namespace tessel
