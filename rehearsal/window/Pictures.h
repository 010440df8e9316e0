#pragma once

#include <QString>
#include <filesystem>

#include "app/ContentView.h"

namespace tessel {

/// Saves pictures of the window and of the dialogs above it, in light, dark and high-contrast colours, each
/// at the window's current size, at its smallest, and on the smallest screen that it fits.
class Pictures {
  public:
    /// The screens that the window is shown on, in device-independent pixels.
    static constexpr QSize largeScreen{1920, 1080};
    static constexpr QSize smallScreen{812, 608};

    /// Creates the folder if it is missing. Pictures replace earlier ones of the same name.
    Pictures(ContentView& window, std::filesystem::path folder);

    void take(const QString& stage) const;

  private:
    void save(const QString& name) const;

    ContentView& window;
    std::filesystem::path folder;
};

}  // namespace tessel
