#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/concurrency/Task.h"

namespace tessel {

/// An activity that lasts until this object is destroyed.
class TemporaryActivity {
  public:
    virtual ~TemporaryActivity() = default;
};

/// A disk or a medium that has come or gone.
struct DiskChange {
    std::string systemName;  ///< such as "sdb"
    bool hasGone = false;
};

/// The services of the desktop that the program runs on. They may be called on the main thread only.
class Desktop {
  public:
    struct OpenPanel {
        std::string title;
        std::string prompt;  ///< the text of the button that confirms
        std::string message;
        std::vector<std::string> extensions;  ///< of the files that may be chosen, without the dot
    };

    struct Alert {
        std::string message;
        std::string informativeText;
        std::string button;
        std::string symbol;             ///< the name of a picture
        std::string symbolDescription;  ///< the alternative text for screen readers
    };

    struct Notification {
        std::string title;
        std::string text;
    };

    virtual ~Desktop() = default;

    /// Lets the user choose one file, starting in their Desktop folder, and returns its path, which may be a
    /// link. Returns nothing if the user cancels.
    virtual Task<std::optional<std::filesystem::path>> runOpenPanel(OpenPanel panel) = 0;

    /// Shows an alert above the window and returns at once.
    virtual void presentAlert(const Alert& alert) = 0;

    virtual void beep() = 0;

    /// Draws the user's attention to the program once and shows the notification, unless the user is already
    /// looking at the program. Returns at once. Does nothing where the desktop has no means for it.
    virtual void requestUserAttention(const Notification& notification) = 0;

    /// Keeps the computer awake for as long as the activity lasts. Does nothing where the desktop has no
    /// means for it.
    [[nodiscard]] virtual std::unique_ptr<TemporaryActivity> beginActivity(const std::string& reason) = 0;
};

}  // namespace tessel
