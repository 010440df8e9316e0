#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "foundation/Published.h"
#include "platform/Desktop.h"
#include "platform/concurrency/Task.h"
#include "services/DiskService.h"
#include "services/ImageWriterService.h"
#include "viewmodel/ImageSelection.h"
#include "viewmodel/OperationLog.h"
#include "viewmodel/TargetSelection.h"
#include "viewmodel/TesselOperationState.h"
#include "viewmodel/WriteProgress.h"
#include "viewmodel/WriteTask.h"

namespace tessel {

/// Holds everything that the window shows, and offers every operation. It may be used on the main thread
/// only, and is held in a shared pointer. Only one operation runs at a time, and calls that arrive meanwhile
/// are ignored.
class TesselViewModel : public std::enable_shared_from_this<TesselViewModel> {
  public:
    struct Environment {
        std::shared_ptr<MainThread> mainThread;
        Desktop& desktop;  ///< must outlive the view model
        DiskService diskService;
        ImageWriterService imageWriterService;
    };

    static std::shared_ptr<TesselViewModel> create(Environment environment);
    TesselViewModel(const TesselViewModel&) = delete;
    TesselViewModel& operator=(const TesselViewModel&) = delete;

    /// The function that is called after every change to what can be read here.
    std::function<void()> onChange;

    // What is shown

    [[nodiscard]] const TesselOperationState& state() const { return operationState(); }
    [[nodiscard]] bool isBusy() const { return state().isBusy(); }
    [[nodiscard]] const OperationLog& log() const { return operationLog; }
    [[nodiscard]] const TargetSelection& targets() const { return targetSelection; }
    [[nodiscard]] const ImageSelection& image() const { return imageSelection; }
    [[nodiscard]] const WriteTask& write() const { return currentWrite; }
    [[nodiscard]] const WriteProgress& progress() const { return currentWrite.progress(); }
    /// Returns the progress from the first selection to the end of the write, from 0 to 1.
    [[nodiscard]] double overallWorkflowProgress() const;
    [[nodiscard]] bool canStartWrite() const { return !writeObstacle(); }
    /// Returns the first condition of a write that is missing, as a sentence.
    [[nodiscard]] std::optional<std::string> writeObstacle() const;
    [[nodiscard]] bool didPerformInitialScan() const { return hasStartedScan; }
    /// Returns whether a disk has come or gone since the last scan began.
    [[nodiscard]] bool haveDisksChanged() const { return disksChanged(); }

    // Operations

    /// Clears the log, unless the program is busy.
    void clearLog();
    /// Begins to scan all disks. The state shows when the scan has ended.
    void refreshDisks();
    /// Notes that a disk has come or gone, without scanning.
    void noteDiskChange(const DiskChange& change);
    /// Makes an eligible disk the target; ignores any other.
    void selectDisk(const std::string& id);
    /// Lets the user choose an image in a panel. The state shows when they have.
    void chooseImage();
    /// Chooses this file, or the one that it links to, as if the user had done so in the panel.
    void chooseImage(const std::filesystem::path& file);
    /// Gives up a chosen file whose disk does not answer. An open panel stays.
    void cancelImageChoice();
    /// Sets whether the next write is verified. Does nothing while the program is busy, so that the report of
    /// a write stays true.
    void setVerifyAfterWrite(bool verify);
    /// Begins the destructive operation. Requires: the user has confirmed it.
    void startWrite();
    void requestStop() { currentWrite.requestStop(); }
    void applyWriteProgress(const ImageWriteProgress& report,
                            TransferRate::TimePoint now = std::chrono::steady_clock::now()) {
        currentWrite.applyWriteProgress(report, now);
    }

  private:
    explicit TesselViewModel(Environment environment);

    template <typename... Arguments>
    TaskHandle start(Task<> (TesselViewModel::*operation)(Arguments...), Arguments... arguments);
    Task<> scanDisks();
    Task<> runOpenPanel();
    Task<> takeImage(Task<SDImageFile> inspection);
    void noteCancelledChoice();
    [[nodiscard]] bool isNews(const DiskChange& change) const;
    Task<> performWrite();

    std::shared_ptr<MainThread> mainThread;
    Desktop& desktop;
    DiskService diskService;
    ImageWriterService imageWriterService;

    Published<TesselOperationState> operationState{onChange, {}};
    OperationLog operationLog{onChange};
    TargetSelection targetSelection{onChange};
    ImageSelection imageSelection{onChange};
    std::optional<TaskHandle> imageChoice;
    Published<bool> disksChanged{onChange, false};
    std::vector<DiskChange> goneDuringWrite;
    bool hasStartedScan = false;
    WriteTask currentWrite{onChange,
                           {.desktop = desktop,
                            .diskService = diskService,
                            .imageWriterService = imageWriterService,
                            .image = imageSelection,
                            .targets = targetSelection,
                            .log = operationLog,
                            .state = operationState}};
};

}  // namespace tessel
