#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/Desktop.h"

namespace tessel {

/// Asks the desktop to show the notification, without waiting. Does nothing if no service shows
/// notifications.
void showNotification(const Desktop::Notification& notification);

/// Shows the progress of the program's work, from 0 to 1, at its icon in the desktop's dock; nothing takes it
/// away. Does nothing where no dock reads it.
void showDockProgress(std::optional<double> progress);

/// Keeps the computer from falling asleep until the result is destroyed. Does nothing where that is
/// impossible.
std::unique_ptr<TemporaryActivity> blockSleep(const std::string& reason);

}  // namespace tessel
