#pragma once

#include <exception>
#include <functional>
#include <optional>
#include <string>

#include "foundation/Published.h"
#include "foundation/Sha256.h"
#include "platform/Desktop.h"
#include "platform/concurrency/Task.h"
#include "services/DiskService.h"
#include "services/ImageWriterService.h"
#include "viewmodel/ImageSelection.h"
#include "viewmodel/OperationLog.h"
#include "viewmodel/TargetSelection.h"
#include "viewmodel/TesselOperationState.h"
#include "viewmodel/TransferRate.h"
#include "viewmodel/WriteProgress.h"

namespace tessel {

/// Owns a write: what is to be done, how far it has come, its stop and its outcome. It may be used on the
/// main thread only.
class WriteTask : private ImageWriteListener {
  public:
    /// What a write uses and changes. All of it must outlive the write.
    struct Surroundings {
        Desktop& desktop;
        const DiskService& diskService;
        const ImageWriterService& imageWriterService;
        const ImageSelection& image;
        TargetSelection& targets;
        OperationLog& log;
        Published<TesselOperationState>& state;
    };

    WriteTask(const std::function<void()>& onChange, const Surroundings& surroundings);

    Published<std::optional<TaskHandle>> writeTask;  ///< from the start of a write until it has ended
    Published<bool> verifyAfterWrite;
    /// The progress of the current write or, until the next selection or write, of the last one.
    Published<WriteProgress> progress;

    [[nodiscard]] bool exists() const { return writeTask().has_value(); }
    [[nodiscard]] bool isCancellationRequested() const {
        const auto& task = writeTask();
        return task && task->isCancelled();
    }

    /// Returns whether the write has failed, even if a stop that came later is its outcome.
    [[nodiscard]] bool hasFailed() const { return isFailureLogged; }

    /// Returns whether the program has ejected the disk after a failed write, and not found it again since.
    [[nodiscard]] bool hasEjected(const std::string& diskID) const { return ejectedDiskID == diskID; }

    /// Shows that nothing was written yet.
    void resetWriteProgress();

    /// Takes away what the user was to do after the last write.
    void forgetHint();

    /// Keeps the handle of the task that will call performWrite().
    void begin(TaskHandle task);
    /// Writes the selected image to the target and applies the outcome. Never throws.
    Task<> performWrite();
    /// Shows a report that came at that time, and logs its phase if it is a new one.
    void applyWriteProgress(const ImageWriteProgress& report, TransferRate::TimePoint now);

    [[nodiscard]] bool canRequestStop() const;
    void requestStop();

  private:
    void onProgress(const ImageWriteProgress& report) override;
    void onFailure(const TesselError& error) override;
    void onEjected(const SDWholeDisk& card) override;
    void onDiskGone() override;

    Task<> writeSelectedImage();
    [[nodiscard]] SDWholeDisk requireWritableTarget(const SDImageFile& image) const;
    Task<SDWholeDisk> revalidateSelectedDisk(SDWholeDisk expected);
    void say(const std::string& title, const std::string& detail, const std::string& hint = "");
    void finishSuccessfulWrite(const std::string& writtenDiskID, const Sha256::Digest& digest);
    void logFailure(const std::exception_ptr& error);
    void finishFailedWrite(const std::exception_ptr& error);
    void finishCancelledWrite();
    void showSafeToRemoveAlert(bool verified) const;

    Surroundings surroundings;
    TransferRate rate;
    bool isFailureLogged = false;
    bool isDiskLoggedAsGone = false;
    std::optional<std::string> ejectedDiskID;  ///< the card ejected after a failure, until it is found again
};

}  // namespace tessel
