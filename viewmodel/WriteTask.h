#pragma once

#include <exception>
#include <functional>
#include <optional>
#include <string>

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

namespace tessel {

/// Carries out the destructive operation: its steps, its stop and its outcome. Use it on the main thread
/// only.
class WriteTask {
  public:
    /// Refers to what a write uses and changes. All of it must outlive the write.
    struct Surroundings {
        Desktop& desktop;
        const DiskService& diskService;
        const ImageWriterService& imageWriterService;
        const ImageSelection& image;
        TargetSelection& targets;
        WriteProgress& progress;
        OperationLog& log;
        Published<TesselOperationState>& state;
    };

    WriteTask(const std::function<void()>& onChange, const Surroundings& surroundings);

    /// Tells whether a write exists, from its start until it has ended.
    [[nodiscard]] bool exists() const { return running().has_value(); }
    [[nodiscard]] bool isCancellationRequested() const { return cancellationRequested(); }

    /// Tells whether the write has failed, even if a stop that came later is its outcome.
    [[nodiscard]] bool hasFailed() const { return isFailureLogged; }

    /// Makes everything ready for a write to begin.
    void prepare();
    /// Takes the handle of the task that will call perform().
    void begin(TaskHandle task) { running = std::move(task); }
    /// Writes the selected image to the target and applies the outcome. Never throws.
    Task<> perform(bool verify, ImageWriteProgressHandler report);

    [[nodiscard]] bool canRequestStop() const;
    void requestStop();

  private:
    Task<> writeSelectedImage(bool verify, ImageWriteProgressHandler report);
    [[nodiscard]] SDWholeDisk requireWritableTarget(const SDImageFile& image) const;
    Task<SDWholeDisk> revalidateTarget(SDWholeDisk expected);
    void finishSuccessfulWrite(const std::string& writtenDiskID, bool verified);
    void logFailure(const std::exception_ptr& error);
    void noteThatDiskIsGone();
    void finishFailedWrite(const std::exception_ptr& error);
    void finishCancelledWrite();
    void showSafeToRemoveAlert(bool verified) const;

    Surroundings surroundings;
    Published<std::optional<TaskHandle>> running;
    Published<bool> cancellationRequested;
    bool isFailureLogged = false;
    bool isDiskLoggedAsGone = false;
    std::optional<std::string> ejectedDiskID;  ///< since a failure, and not found again yet
};

}  // namespace tessel
