#pragma once

#include <functional>
#include <memory>

#include "platform/Desktop.h"

namespace tessel {

/// What the user has set on the desktop for the windows of all programs.
struct DesktopLook {
    bool isDark = false;   ///< whether dark windows are preferred
    double textScale = 1;  ///< times the usual size of text
};

/// Calls the function now and, where Qt's event loop runs on GLib's as it usually does, again at each change
/// until the result is destroyed, on the main thread. Only GNOME needs that, which leaves it to each program
/// to follow these settings; elsewhere nothing is called and nothing returned. Requires: a QApplication.
[[nodiscard]] std::unique_ptr<TemporaryActivity> watchDesktopLook(
    std::function<void(const DesktopLook&)> onChange);

}  // namespace tessel
