#pragma once

#include <QSize>

namespace tessel {

/// Holds the sizes of the window's content in device-independent pixels.
struct WindowSizes {
    QSize usual;
    QSize minimum;

    /// Returns how large the window may become on such a screen.
    static QSize largest(const QSize& room);

    /// Returns the window's sizes on a screen with that much room for windows and their frames. They differ
    /// from those on a large screen only where the room does not suffice.
    static WindowSizes fitting(const QSize& room);

    bool operator==(const WindowSizes&) const = default;
};

}  // namespace tessel
