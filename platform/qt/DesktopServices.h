#pragma once

#include <memory>
#include <string>

#include "platform/Desktop.h"

namespace tessel {

/// Has the desktop show the notification, and does not wait for it. Where there is nobody to show it, nothing
/// happens.
void showNotification(const Desktop::Notification& notification);

/// Keeps the computer from falling asleep until the result is dropped. Where that can't be had, nothing
/// happens.
std::unique_ptr<TemporaryActivity> blockSleep(const std::string& reason);

}  // namespace tessel
