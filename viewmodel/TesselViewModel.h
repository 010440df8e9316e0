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

/// Everything that the window shows, and every operation that it offers. Lives on the main thread, in a
/// shared pointer. One operation runs at a time: calls that come meanwhile are ignored.
class TesselViewModel : public std::enable_shared_from_this<TesselViewModel> {
  public:
    struct Environment {
        std::shared_ptr<MainThread> mainThread;
        Desktop& desktop;  ///< outlives the view model
        SystemUtilities utilities;
        RawDeviceFactory makeDevice;
    };

    static std::shared_ptr<TesselViewModel> create(const Environment& environment);
    TesselViewModel(const TesselViewModel&) = delete;
    TesselViewModel& operator=(const TesselViewModel&) = delete;

    /// Called after every change of what can be read here.
    std::function<void()> onChange;

    // State and log

    [[nodiscard]] const TesselOperationState& state() const { return operationState(); }
    [[nodiscard]] bool isBusy() const { return state().isBusy(); }
    [[nodiscard]] bool isSuccessfulCompletion() const { return state().isSuccessfulCompletion(); }
    [[nodiscard]] const std::vector<std::string>& logLines() const { return log.lines(); }
    /// The log as one text. Growing it costs no more than the new lines.
    [[nodiscard]] const std::string& logText() const { return log.text(); }
    /// Does nothing while busy.
    void clearLog();

    // Disks

    [[nodiscard]] const std::vector<SDWholeDisk>& disks() const { return targets.disks(); }
    /// Empty without a target.
    [[nodiscard]] const std::string& selectedDiskID() const { return targets.selectedDiskID(); }
    /// The target, or null.
    [[nodiscard]] const SDWholeDisk* selectedDisk() const { return targets.selectedDisk(); }
    [[nodiscard]] bool didPerformInitialScan() const { return hasStartedScan; }
    /// Scans all disks; the state tells when that is over.
    void refreshDisks();
    /// Makes an eligible disk the target; any other is ignored.
    void selectDisk(const std::string& id);

    // Image

    [[nodiscard]] const std::optional<SDImageFile>& selectedImage() const { return image.selectedImage(); }
    void chooseImage();

    // Write

    [[nodiscard]] bool verifyAfterWrite() const { return verifies(); }
    /// Does nothing while busy: what is said of a write is what was done in it.
    void setVerifyAfterWrite(bool verify);
    [[nodiscard]] bool canStartWrite() const;
    /// Begins the destructive operation. Only to be called once the person has confirmed it.
    void startWrite();
    /// Whether a write task exists, from its start until it has ended.
    [[nodiscard]] bool hasWriteTask() const { return writeTask.exists(); }
    [[nodiscard]] bool isCancellationRequested() const { return writeTask.isCancellationRequested(); }
    [[nodiscard]] bool canRequestStop() const { return writeTask.canRequestStop(); }
    void requestStop() { writeTask.requestStop(); }

    // Progress

    /// Each is 0 to 1.
    [[nodiscard]] double writeOperationProgress() const { return progress.overall(); }
    [[nodiscard]] double sdPreparationAndWriteProgress() const { return progress.preparationAndWriting(); }
    [[nodiscard]] double overallWorkflowProgress() const;
    [[nodiscard]] const std::string& writePhaseTitle() const { return progress.title(); }
    [[nodiscard]] const std::string& writeProgressDetail() const { return progress.detail(); }
    [[nodiscard]] std::optional<ImageWritePhase> currentWritePhase() const { return progress.phase(); }
    void applyWriteProgress(const ImageWriteProgress& report);

  private:
    explicit TesselViewModel(const Environment& environment);

    TaskHandle start(Task<> (TesselViewModel::*operation)());
    Task<> scanDisks();
    Task<> performWrite();
    void takeChosenImage(const std::filesystem::path& file);

    std::shared_ptr<MainThread> mainThread;
    Desktop& desktop;
    DiskService diskService;
    ImageWriterService imageWriterService;

    Published<TesselOperationState> operationState{onChange, {}};
    OperationLog log{onChange};
    TargetSelection targets{onChange};
    ImageSelection image{onChange};
    WriteProgress progress{onChange};
    Published<bool> verifies{onChange, true};
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
