#pragma once

#include <QDBusPendingCallWatcher>
#include <QDBusUnixFileDescriptor>
#include <memory>
#include <string>

#include "platform/Desktop.h"

namespace tessel {

/// Keeps the login service from putting the computer to sleep, from the service's answer until it is dropped.
/// Where no such service runs, nothing happens.
class SleepBlock : public TemporaryActivity {
  public:
    explicit SleepBlock(const std::string& reason);

  private:
    std::unique_ptr<QDBusPendingCallWatcher> request;
    QDBusUnixFileDescriptor lock;  ///< the service watches for its closing
};

}  // namespace tessel
