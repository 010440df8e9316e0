#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/concurrency/Task.h"

namespace tessel {

/// Something that goes on until this is dropped.
class TemporaryActivity {
  public:
    virtual ~TemporaryActivity() = default;
};

/// What the program asks of the desktop that it runs on. Called on the main thread only.
class Desktop {
  public:
    struct OpenPanel {
        std::string title;
        std::string prompt;  ///< on the button that confirms
        std::string message;
        std::vector<std::string> extensions;  ///< of the files that may be chosen, without the dot
    };

    struct Alert {
        std::string message;
        std::string informativeText;
        std::string button;
        std::string symbol;             ///< the name of a picture
        std::string symbolDescription;  ///< for people who can't see it
    };

    struct Notification {
        std::string title;
        std::string text;
    };

    virtual ~Desktop() = default;

    /// Lets the user choose one file, starting in their Desktop folder, and ends once they have. The path
    /// may be a link; it is absent when the user cancels.
    virtual Task<std::optional<std::filesystem::path>> runOpenPanel(OpenPanel panel) = 0;

    /// Shows an alert above the window and returns at once.
    virtual void presentAlert(const Alert& alert) = 0;

    virtual void beep() = 0;

    /// Has the desktop point at the program once and show the notification, unless the user is looking at the
    /// program anyway. Returns at once. Where the desktop can't do that, nothing happens.
    virtual void requestUserAttention(const Notification& notification) = 0;

    /// Keeps the computer awake for as long as the activity lasts. Where the desktop can't do that, nothing
    /// happens.
    [[nodiscard]] virtual std::unique_ptr<TemporaryActivity> beginActivity(const std::string& reason) = 0;
};

}  // namespace tessel
