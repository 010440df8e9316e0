#include "platform/qt/Notification.h"

namespace tessel {

/// Does nothing: Qt can only show a notification there through an icon in the menu bar, which nobody asked
/// for.
void showNotification(const Desktop::Notification&) {}

}  // namespace tessel
