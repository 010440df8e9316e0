#pragma once

#include <memory>

#include "app/ContentView.h"
#include "platform/qt/QtDesktop.h"
#include "viewmodel/TesselViewModel.h"

namespace tessel {

class TerminationSignal;

/// The program: one window on one view model, which works on the given disks. Needs a QApplication.
class Application {
  public:
    /// Where the program finds its disks.
    struct Disks {
        SystemUtilities utilities;
        RawDeviceFactory makeDevice;
    };

    explicit Application(const Disks& disks);

    QtDesktop& desktop() { return qtDesktop; }
    TesselViewModel& viewModel() { return *model; }
    ContentView& window() { return contentView; }
    const std::shared_ptr<MainThread>& mainThread() const { return thread; }

    /// Shows the window and gives the exit status once it was closed and nothing runs any more. A request to
    /// end, or the end of the desktop's session, closes the window as soon as the card is closed and ejected.
    int run(TerminationSignal& terminationSignal);

  private:
    std::shared_ptr<MainThread> thread;
    QtDesktop qtDesktop;
    std::shared_ptr<TesselViewModel> model;
    ContentView contentView;
};

/// Sets what the whole program looks like and is called. To be called once, before any window.
void prepareApplication();

}  // namespace tessel
