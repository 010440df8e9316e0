#pragma once

#include "platform/Desktop.h"

namespace tessel {

/// Has the desktop show the notification, and does not wait for it. Where there is nobody to show it, nothing
/// happens.
void showNotification(const Desktop::Notification& notification);

}  // namespace tessel
