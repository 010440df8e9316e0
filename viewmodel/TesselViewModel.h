#pragma once

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

/// Holds everything that the window shows, and offers every operation. It lives on the main thread, in a
/// shared pointer. Only one operation runs at a time, and calls that arrive meanwhile are ignored.
class TesselViewModel : public std::enable_shared_from_this<TesselViewModel> {
  public:
    struct Environment {
        std::shared_ptr<MainThread> mainThread;
        Desktop& desktop;  ///< must outlive the view model
        SystemUtilities utilities;
        RawDeviceFactory makeDevice;
    };

    static std::shared_ptr<TesselViewModel> create(const Environment& environment);
    TesselViewModel(const TesselViewModel&) = delete;
    TesselViewModel& operator=(const TesselViewModel&) = delete;

    /// Is called after every change to what can be read here.
    std::function<void()> onChange;

    // State and log

    [[nodiscard]] const TesselOperationState& state() const { return operationState(); }
    [[nodiscard]] bool isBusy() const { return state().isBusy(); }
    [[nodiscard]] bool isSuccessfulCompletion() const { return state().isSuccessfulCompletion(); }
    [[nodiscard]] const std::vector<std::string>& logLines() const { return log.lines(); }
    /// Returns the log as one text. After the log has grown, this costs no more than the new lines do.
    [[nodiscard]] const std::string& logText() const { return log.text(); }
    /// Clears the log, unless the program is busy.
    void clearLog();

    // Disks

    [[nodiscard]] const std::vector<SDWholeDisk>& disks() const { return targets.disks(); }
    /// Returns the target's identifier, or an empty text if there is no target.
    [[nodiscard]] const std::string& selectedDiskID() const { return targets.selectedDiskID(); }
    /// Returns the target, or null.
    [[nodiscard]] const SDWholeDisk* selectedDisk() const { return targets.selectedDisk(); }
    [[nodiscard]] bool didPerformInitialScan() const { return hasStartedScan; }
    /// Begins to scan all disks. The state tells when the scan has ended.
    void refreshDisks();
    /// Takes the hint that a disk has come or gone. Nothing is scanned for that.
    void noteDiskChange() { disksChanged = true; }
    /// Tells whether a disk has come or gone since the last scan began.
    [[nodiscard]] bool haveDisksChanged() const { return disksChanged(); }
    /// Makes an eligible disk the target; ignores any other.
    void selectDisk(const std::string& id);

    // Image

    [[nodiscard]] const std::optional<SDImageFile>& selectedImage() const { return image.selectedImage(); }
    /// Has the person choose an image in a panel. The state tells when they have.
    void chooseImage();
    /// Chooses this file, or the one that it links to, as if the user had done so in the panel.
    void chooseImage(const std::filesystem::path& file);
    /// Gives up a chosen file whose disk does not answer. An open panel stays.
    void cancelImageChoice();

    // Write

    [[nodiscard]] bool verifyAfterWrite() const { return verifies(); }
    /// Does nothing while the program is busy, so that what is reported of a write is what it did.
    void setVerifyAfterWrite(bool verify);
    [[nodiscard]] bool canStartWrite() const;
    /// Begins the destructive operation. Call it only once the person has confirmed it.
    void startWrite();
    /// Tells whether a write task exists, from its start until it has ended.
    [[nodiscard]] bool hasWriteTask() const { return writeTask.exists(); }
    [[nodiscard]] bool isCancellationRequested() const { return writeTask.isCancellationRequested(); }
    /// Tells whether the last write has failed, even if it was stopped thereafter.
    [[nodiscard]] bool hasWriteFailed() const { return writeTask.hasFailed(); }
    [[nodiscard]] bool canRequestStop() const { return writeTask.canRequestStop(); }
    void requestStop() { writeTask.requestStop(); }

    // Progress

    /// Each returns a fraction from 0 to 1.
    [[nodiscard]] double writeOperationProgress() const { return progress.overall(); }
    [[nodiscard]] double sdPreparationAndWriteProgress() const { return progress.preparationAndWriting(); }
    [[nodiscard]] double overallWorkflowProgress() const;
    [[nodiscard]] const std::string& writePhaseTitle() const { return progress.title(); }
    [[nodiscard]] const std::string& writeProgressDetail() const { return progress.detail(); }
    /// Returns what else the user should know or do after a write, or an empty text.
    [[nodiscard]] const std::string& writeHint() const { return progress.hint(); }
    /// Returns the speed and the time that the phase will still take, or an empty text if nothing can be
    /// said.
    [[nodiscard]] const std::string& writeTransferRate() const { return progress.transferRate(); }
    [[nodiscard]] std::optional<ImageWritePhase> currentWritePhase() const { return progress.phase(); }
    void applyWriteProgress(const ImageWriteProgress& report);

  private:
    explicit TesselViewModel(const Environment& environment);

    template <typename... Arguments>
    TaskHandle start(Task<> (TesselViewModel::*operation)(Arguments...), Arguments... arguments);
    Task<> scanDisks();
    Task<> runOpenPanel();
    Task<> takeImage(Task<SDImageFile> inspection);
    void noteCancelledChoice();
    Task<> performWrite();

    std::shared_ptr<MainThread> mainThread;
    Desktop& desktop;
    DiskService diskService;
    ImageWriterService imageWriterService;

    Published<TesselOperationState> operationState{onChange, {}};
    OperationLog log{onChange};
    TargetSelection targets{onChange};
    ImageSelection image{onChange};
    std::optional<TaskHandle> imageChoice;
    WriteProgress progress{onChange};
    Published<bool> verifies{onChange, true};
    Published<bool> disksChanged{onChange, false};
    bool hasStartedScan = false;
    WriteTask writeTask{onChange,
                        {.desktop = desktop,
                         .diskService = diskService,
                         .imageWriterService = imageWriterService,
                         .image = image,
                         .targets = targets,
                         .progress = progress,
                         .log = log,
                         .state = operationState}};
};

}  // namespace tessel
