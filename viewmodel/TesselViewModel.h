#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "foundation/Published.h"
#include "model/ImageWriteProgress.h"
#include "model/SDImageFile.h"
#include "model/SDWholeDisk.h"
#include "platform/Desktop.h"
#include "platform/concurrency/TaskHandle.h"
#include "services/DiskService.h"
#include "services/ImageWriterService.h"
#include "viewmodel/TesselOperationState.h"

namespace tessel {

/// Everything that the window shows, and every operation that it offers. Lives on the main thread, in a
/// shared pointer. One operation runs at a time: calls that come meanwhile are ignored.
class TesselViewModel : public std::enable_shared_from_this<TesselViewModel> {
  public:
    struct Environment {
        MainThread mainThread;
        Desktop& desktop;  ///< outlives the view model
        SystemUtilities utilities;
        RawDeviceFactory makeDevice;
    };

    static std::shared_ptr<TesselViewModel> create(Environment environment);
    TesselViewModel(const TesselViewModel&) = delete;
    TesselViewModel& operator=(const TesselViewModel&) = delete;

    /// Called after every change of a published property.
    std::function<void()> onChange;

    template <typename T>
    using Property = Published<T, TesselViewModel>;

    Property<std::optional<SDImageFile>> selectedImage{onChange, std::nullopt};
    Property<std::vector<SDWholeDisk>> disks{onChange, {}};
    Property<std::string> selectedDiskID{onChange, ""};  ///< empty without a target
    Property<bool> verifyAfterWrite{onChange, true};
    Property<TesselOperationState> state{onChange, {}};
    Property<std::vector<std::string>> logLines{onChange, {}};
    Property<double> writeOperationProgress{onChange, 0};         ///< 0 to 1, of the whole write
    Property<double> sdPreparationAndWriteProgress{onChange, 0};  ///< 0 to 1, up to the flush
    Property<std::string> writePhaseTitle{onChange, "Waiting to Start"};
    Property<std::string> writeProgressDetail{onChange, "Select an image and a recognized SD card."};
    Property<bool> isCancellationRequested{onChange, false};

    // State and progress

    bool isBusy() const { return state().isBusy(); }
    /// Whether a write task exists, from its start until it has ended.
    bool hasWriteTask() const { return writeTask().has_value(); }
    /// The target, or null.
    const SDWholeDisk* selectedDisk() const;
    /// The log as one text. Growing it costs no more than the new lines.
    const std::string& logText() const;
    bool isSuccessfulCompletion() const;
    double overallWorkflowProgress() const;
    /// Does nothing while busy: what is said of a write is what was done in it.
    void setVerifyAfterWrite(bool verify);
    /// Does nothing while busy.
    void clearLog();
    void applyWriteProgress(const ImageWriteProgress& progress);

    // Disks

    bool didPerformInitialScan() const { return hasStartedScan; }
    /// The caller keeps the view model alive.
    Task<> refreshDisks();
    /// Makes an eligible disk the target; any other is ignored.
    void selectDisk(const std::string& id);

    // Image

    void chooseImage();
    bool canStartWrite() const;

    // Write

    /// Begins the destructive operation. Only to be called once the user has confirmed it.
    void startWrite();
    bool canRequestStop() const;
    void requestStop();

  private:
    explicit TesselViewModel(Environment environment);

    void appendLog(const std::string& message);
    void logError(const std::exception_ptr& error);
    void resetWriteProgress();

    void applyScan(std::vector<SDWholeDisk> scannedDisks);
    void keepOrClearTarget();
    void forgetDisk(const std::string& id);

    void applyChosenImage(const std::filesystem::path& file);

    static Task<> runWriteTask(std::weak_ptr<TesselViewModel> weakViewModel);
    static Task<> forwardProgress(std::weak_ptr<TesselViewModel> weakViewModel, ImageWriteProgress progress);
    Task<> performWrite();
    Task<> writeSelectedImage();
    Task<SDWholeDisk> revalidateSelectedDisk(SDWholeDisk expected);
    void finishSuccessfulWrite(const std::string& writtenDiskID);
    void finishFailedWrite(const std::exception_ptr& error);
    void finishCancelledWrite();
    void showSafeToRemoveAlert(bool verified);

    MainThread mainThread;
    Desktop& desktop;
    DiskService diskService;
    ImageWriterService imageWriterService;
    bool hasStartedScan = false;
    Property<std::optional<ImageWritePhase>> currentWritePhase{onChange, std::nullopt};
    std::optional<ImageWritePhase> lastLoggedWritePhase;
    Property<std::optional<TaskHandle<void>>> writeTask{onChange, std::nullopt};

    /// The first lines of the log, joined.
    struct JoinedLines {
        std::string text;
        size_t count = 0;
    };
    mutable JoinedLines joinedLog;
};

/// The image at that place, when it is one that can be written. Throws TesselError or PlatformError.
SDImageFile inspectImage(const std::filesystem::path& url);

/// What is shown above the progress bars in a phase.
std::string phaseTitle(ImageWritePhase phase);

}  // namespace tessel
