#pragma once

#include <QPalette>

namespace tessel {

/// Returns the colours of a dark window, for where the desktop asks for one and names no colours.
[[nodiscard]] QPalette darkPalette();

/// Makes the program's windows dark while the user prefers that, on GNOME, which tells programs of the wish
/// but leaves the colours of their toolkit light. Other desktops change the colours themselves. Needs Qt 6.5;
/// does nothing with an older one. Call it once, on the main thread.
void followColorScheme();

}  // namespace tessel
