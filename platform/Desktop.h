#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tessel {

/// Something that lasts until it is dropped.
class TemporaryActivity {
  public:
    virtual ~TemporaryActivity() = default;
};

/// What the program asks of the desktop it runs on. To be called on the main thread.
class Desktop {
  public:
    struct OpenPanel {
        std::string title;
        std::string prompt;  ///< of the button that confirms
        std::string message;
        std::vector<std::string> extensions;  ///< of the files that may be chosen, without the dot
    };

    struct Alert {
        std::string message;
        std::string informativeText;
        std::string button;
        std::string symbol;             ///< name of the picture
        std::string symbolDescription;  ///< for those who can't see it
    };

    virtual ~Desktop() = default;

    /// Lets the user choose one file, beginning in their Desktop folder, and returns when that is done. Links
    /// are resolved. Absent when cancelled.
    [[nodiscard]] virtual std::optional<std::filesystem::path> runOpenPanel(const OpenPanel& panel) = 0;

    /// Shows an alert above the window and returns at once.
    virtual void presentAlert(const Alert& alert) = 0;

    virtual void beep() = 0;

    /// Has the desktop point at the program, once, unless the user is there anyway.
    virtual void requestUserAttention() = 0;

    /// Keeps the computer from falling asleep. Where the desktop can't do that, it does nothing.
    [[nodiscard]] virtual std::unique_ptr<TemporaryActivity> beginActivity(const std::string& reason) = 0;
};

}  // namespace tessel
