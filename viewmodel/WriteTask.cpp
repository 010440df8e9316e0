#include <utility>

#include "foundation/Errors.h"
#include "model/SDCardPolicy.h"
#include "model/TesselError.h"
#include "platform/concurrency/Background.h"
#include "viewmodel/TesselViewModel.h"

namespace tessel {

namespace {

bool isCancellation(const std::exception_ptr& error) {
    try {
        std::rethrow_exception(error);
    } catch (const CancellationError&) {
        return true;
    } catch (const TesselError& own) {
        return own.kind() == TesselError::Case::operationCancelled;
    } catch (const std::exception&) {
        return false;
    }
}

std::string revalidationDescription(const SDWholeDisk& disk) {
    return "identifier=" + disk.id + ", media=" + disk.mediaName + ", bus=" + disk.busProtocol +
           ", size=" + std::to_string(disk.sizeBytes);
}

/// Why the expected disk was not seen in any attempt.
std::string revalidationFailure(const SDWholeDisk& expected, const DiskObservation& seen) {
    if (seen.disk) {
        return "Disk revalidation mismatch. Expected " + revalidationDescription(expected) + "; observed " +
               revalidationDescription(*seen.disk) + ".";
    }
    if (seen.readError) {
        return "Disk revalidation could not read the selected disk: " + localizedDescription(seen.readError);
    }
    return "Disk revalidation could not find /dev/" + expected.id + " as a whole disk.";
}

std::string failurePhaseTitle(std::optional<ImageWritePhase> phase) {
    return (phase ? phaseTitle(*phase) : "Image Write") + " Failed";
}

std::string cancellationMessage(std::optional<ImageWritePhase> phase) {
    switch (phase.value_or(ImageWritePhase::preparingTarget)) {
        case ImageWritePhase::verifyingImage:
            return "Writing completed, but verification was interrupted. Treat the SD card as unverified "
                   "before using it.";
        case ImageWritePhase::synchronizing:
        case ImageWritePhase::ejecting:
        case ImageWritePhase::completed:
            return "The write had already reached its finalization stage. The SD card was ejected when "
                   "possible.";
        default:
            return "Writing was interrupted. The SD card may contain incomplete or invalid data and was "
                   "ejected when possible.";
    }
}

}  // namespace

void TesselViewModel::startWrite() {
    if (hasWriteTask() || isBusy()) return;
    isCancellationRequested = false;
    resetWriteProgress();
    state = {TesselOperationState::Case::writingImage, ""};
    writeTask = startTask(Home::main(mainThread), Priority::userInitiated, runWriteTask(weak_from_this()));
}

/// Keeps the view model until the write is over, so that what was begun is always ended.
Task<> TesselViewModel::runWriteTask(std::weak_ptr<TesselViewModel> weakViewModel) {
    const auto viewModel = weakViewModel.lock();
    if (!viewModel) co_return;
    co_await viewModel->performWrite();
    viewModel->writeTask = std::nullopt;
    viewModel->isCancellationRequested = false;
}

Task<> TesselViewModel::performWrite() {
    const auto outcome = co_await outcomeOf(writeSelectedImage());
    if (!outcome.error()) co_return;
    if (isCancellation(outcome.error())) {
        finishCancelledWrite();
    } else {
        finishFailedWrite(outcome.error());
    }
}

Task<> TesselViewModel::writeSelectedImage() {
    co_await checkCancellation();
    if (!selectedImage()) throw TesselError(TesselError::Case::invalidImage);
    if (!selectedDisk()) throw TesselError(TesselError::Case::noSelectedDisk);
    const auto image = *selectedImage();
    const auto target = *selectedDisk();
    if (const auto reason = eligibilityFailureReason(target)) throw TesselError::unsafeDisk(*reason);
    if (target.sizeBytes < image.sizeBytes) throw TesselError(TesselError::Case::imageTooLarge);

    const auto activity = desktop.beginActivity("Writing and verifying an SD-card image");
    appendLog("Revalidating /dev/" + target.id + " immediately before the destructive operation.");
    co_await checkCancellation();
    const auto card = co_await revalidateSelectedDisk(target);
    co_await checkCancellation();
    if (inspectImage(image.url).sizeBytes != image.sizeBytes)
        throw TesselError(TesselError::Case::imageChanged);
    co_await checkCancellation();

    appendLog("Writing " + image.displayName() + " to /dev/r" + card.id +
              ". All existing data on the SD card will be destroyed.");
    if (verifyAfterWrite()) {
        appendLog(
            "SHA-256 verification is enabled. Verification reads the written image length back through the "
            "same authorized raw-device descriptor.");
    }
    co_await checkCancellation();
    const auto progress = [weak = weak_from_this()](ImageWriteProgress report) {
        return forwardProgress(weak, report);
    };
    co_await imageWriterService.write({.image = image, .target = card, .verify = verifyAfterWrite()},
                                      progress);
    finishSuccessfulWrite(card.id);
}

Task<> TesselViewModel::forwardProgress(std::weak_ptr<TesselViewModel> weakViewModel,
                                        ImageWriteProgress progress) {
    if (const auto viewModel = weakViewModel.lock()) viewModel->applyWriteProgress(progress);
    co_return;
}

/// The last mismatch and the last error of all attempts are remembered for the log.
Task<SDWholeDisk> TesselViewModel::revalidateSelectedDisk(SDWholeDisk expected) {
    DiskObservation seen;
    for (int attempt = 1; attempt <= DiskService::revalidationAttempts; ++attempt) {
        if (attempt > 1) co_await sleepFor(DiskService::revalidationPause);
        auto observed = co_await diskService.observeDisk(expected.id);
        if (observed.disk && isSameDisk(*observed.disk, expected)) {
            if (const auto reason = eligibilityFailureReason(*observed.disk))
                throw TesselError::unsafeDisk(*reason);
            if (attempt > 1) {
                appendLog("Disk revalidation succeeded on attempt " + std::to_string(attempt) + ".");
            }
            co_return std::move(*observed.disk);
        }
        if (observed.disk) seen.disk = std::move(observed.disk);
        if (observed.readError) seen.readError = observed.readError;
    }
    appendLog(revalidationFailure(expected, seen));
    throw TesselError(TesselError::Case::diskChanged);
}

void TesselViewModel::finishSuccessfulWrite(const std::string& writtenDiskID) {
    const bool verified = verifyAfterWrite();
    writeOperationProgress = 1.0;
    sdPreparationAndWriteProgress = 1.0;
    writePhaseTitle = "Safe to Remove";
    writeProgressDetail = "macOS ejected the SD card. It is now safe to physically remove it.";
    selectedDiskID = "";
    forgetDisk(writtenDiskID);
    state = TesselOperationState::completed(verified ? "Image written and verified" : "Image written");
    appendLog(verified ? "The disk image was written, verified, and the SD card was ejected."
                       : "The disk image was written and the SD card was ejected.");
    appendLog("The SD card is now safe to physically remove.");
    showSafeToRemoveAlert(verified);
}

/// Progress, list and target stay, so that the user can try again once the cause is mended.
void TesselViewModel::finishFailedWrite(const std::exception_ptr& error) {
    writePhaseTitle = failurePhaseTitle(currentWritePhase());
    writeProgressDetail = localizedDescription(error);
    state = TesselOperationState::failed("Image write failed");
    logError(error);
}

void TesselViewModel::finishCancelledWrite() {
    const auto target = selectedDiskID();
    const auto message = cancellationMessage(currentWritePhase());
    selectedDiskID = "";
    if (!target.empty()) forgetDisk(target);
    writePhaseTitle = "Operation Cancelled";
    writeProgressDetail = message;
    state = TesselOperationState::warning("Operation cancelled");
    appendLog("Operation cancelled. " + message);
    appendLog("Refresh the disk list before attempting another write.");
}

bool TesselViewModel::canRequestStop() const {
    const auto phase = currentWritePhase();
    return hasWriteTask() && state().kind == TesselOperationState::Case::writingImage &&
           !isCancellationRequested() && phase != ImageWritePhase::ejecting &&
           phase != ImageWritePhase::completed;
}

void TesselViewModel::requestStop() {
    if (!canRequestStop()) return;
    isCancellationRequested = true;
    writePhaseTitle = "Stopping Operation";
    writeProgressDetail =
        "Stopping at the next safe checkpoint, closing the raw device, and ejecting the SD card when "
        "possible.";
    appendLog(
        "Stop requested. The operation will stop at the next safe checkpoint, and the SD card will be "
        "ejected when possible.");
    writeTask()->cancel();
}

void TesselViewModel::showSafeToRemoveAlert(bool verified) {
    desktop.beep();
    desktop.requestUserAttention();
    desktop.presentAlert(
        {.message = "SD Card Is Safe to Remove",
         .informativeText = std::string("The disk image was written ") +
                            (verified ? "and verified successfully" : "successfully") +
                            ". macOS has ejected the SD card, so it is now safe to physically remove it.",
         .button = "Done",
         .symbol = "eject.circle.fill",
         .symbolDescription = "Safe to remove"});
}

}  // namespace tessel
