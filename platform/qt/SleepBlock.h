#pragma once

#include <QDBusPendingCallWatcher>
#include <QDBusUnixFileDescriptor>
#include <memory>
#include <string>

#include "platform/Desktop.h"

namespace tessel {

/// Keeps the login service from putting the computer to sleep, from the service's answer until this object is
/// destroyed. Does nothing where no such service runs.
class SleepBlock : public TemporaryActivity {
  public:
    explicit SleepBlock(const std::string& reason);

  private:
    std::unique_ptr<QDBusPendingCallWatcher> request;
    QDBusUnixFileDescriptor lock;  ///< keeps the computer awake until it is closed
};

}  // namespace tessel
