#include "platform/qt/DesktopServices.h"

#include <unistd.h>

#include "foundation/Errors.h"
#include "platform/Process.h"

namespace tessel {

namespace {

/// Runs the system's own program that keeps the computer awake, which ends with this one at the latest.
struct Caffeinate : TemporaryActivity {
    Process process{{.executable = "/usr/bin/caffeinate",
                     .arguments = {"-i", "-w", std::to_string(getpid())},
                     .environment = {}},
                    {.standardOutput = STDOUT_FILENO, .standardError = STDERR_FILENO}};
};

}  // namespace

/// Does nothing: Qt can only show a notification there through an icon in the menu bar, which this program
/// lacks.
void showNotification(const Desktop::Notification&) {}

/// Does nothing: only frameworks of the system draw on the icon in the Dock.
void showDockProgress(std::optional<double>) {}

std::unique_ptr<TemporaryActivity> blockSleep(const std::string&) {
    try {
        return std::make_unique<Caffeinate>();
    } catch (const PlatformError&) {
        return nullptr;
    }
}

}  // namespace tessel
