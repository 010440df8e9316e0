#pragma once

#include <QApplication>
#include <memory>

#include "app/ContentView.h"
#include "platform/InstalledFiles.h"
#include "platform/qt/QtDesktop.h"
#include "viewmodel/TesselViewModel.h"

namespace tessel {

/// Runs the program: one window on one view model, which works on the given disks. Needs a QApplication.
class VelmoraTesselApp {
  public:
    /// Calls a handler each time a disk has come or gone, until the result is destroyed.
    using DiskWatch =
        std::function<std::unique_ptr<TemporaryActivity>(std::function<void(const DiskChange&)> onChange)>;

    /// Says where the program finds its disks.
    struct Disks {
        SystemUtilities utilities;
        RawDeviceFactory makeDevice;
        DiskWatch watch = {};  ///< may be empty
    };

    explicit VelmoraTesselApp(const Disks& disks);

    QtDesktop& desktop() { return qtDesktop; }
    TesselViewModel& viewModel() { return *model; }
    ContentView& window() { return contentView; }
    const std::shared_ptr<MainThread>& mainThread() const { return thread; }

    /// Shows the window, and returns the exit status once it is closed and nothing is running any more. A
    /// request to terminate, or the end of the desktop session, closes the window as soon as the card is
    /// closed and ejected.
    int run();

  private:
    std::shared_ptr<MainThread> thread;
    QtDesktop qtDesktop;
    std::shared_ptr<TesselViewModel> model;
    ContentView contentView;
    std::unique_ptr<TemporaryActivity> diskWatch;
    std::unique_ptr<TemporaryActivity> terminationWatch;
};

/// Returns whether the environment names a display, which may not answer.
[[nodiscard]] bool isDisplayNamed();

/// Connects to the desktop's display. Where there is none, the program ends with one sentence and status 1;
/// Qt would leave a core dump. The arguments must outlive the result.
[[nodiscard]] std::unique_ptr<QApplication> connectToDisplay(int& argumentCount, char** arguments);

/// Sets the name and the look of the whole program. Call it once, before there is any window.
void prepareApplication();

/// Follows the user's preferences of dark windows and of the size of text, where Qt doesn't, while the result
/// exists. Requires: prepareApplication() was called.
[[nodiscard]] std::unique_ptr<TemporaryActivity> followDesktopLook();

}  // namespace tessel
