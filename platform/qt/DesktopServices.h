#pragma once

#include <memory>
#include <string>

#include "platform/Desktop.h"

namespace tessel {

/// Asks the desktop to show the notification, without waiting. Does nothing if no service shows
/// notifications.
void showNotification(const Desktop::Notification& notification);

/// Keeps the computer from falling asleep until the result is destroyed. Does nothing where that is
/// impossible.
std::unique_ptr<TemporaryActivity> blockSleep(const std::string& reason);

}  // namespace tessel
