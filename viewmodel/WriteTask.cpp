#include "viewmodel/WriteTask.h"

#include <chrono>
#include <string>
#include <utility>

#include "foundation/Errors.h"
#include "model/DiskTexts.h"
#include "model/SystemWords.h"
#include "model/TesselError.h"
#include "platform/concurrency/Background.h"

namespace tessel {

namespace {

bool isCancellation(const std::exception_ptr& error) {
    const auto own = errorOfType<TesselError>(error);
    return own ? own->kind() == TesselError::Case::operationCancelled
               : errorOfType<CancellationError>(error).has_value();
}

bool isDiskGone(const std::exception_ptr& error) {
    const auto own = errorOfType<TesselError>(error);
    return own && own->isDiskGone();
}

std::string revalidationDescription(const SDWholeDisk& disk) {
    return "identifier=" + disk.id + ", media=" + disk.mediaName + ", bus=" + disk.busProtocol +
           ", size=" + std::to_string(disk.sizeBytes);
}

/// Returns the reason why the expected disk was not found.
std::string revalidationFailure(const SDWholeDisk& expected, const DiskSearch& search) {
    if (search.otherDisk) {
        return "Disk revalidation mismatch. Expected " + revalidationDescription(expected) + "; observed " +
               revalidationDescription(*search.otherDisk) + ".";
    }
    if (search.readError) {
        return "Disk revalidation could not read the selected disk: " +
               localizedDescription(search.readError);
    }
    return "Disk revalidation could not find " + devicePath(expected.id) + " as a whole disk.";
}

constexpr auto cardEjected =
    "The SD card is now ejected. To try again, pull it out, insert it again, and refresh the disk list.";

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
        case ImageWritePhase::preparingTarget:
        case ImageWritePhase::authorizingDevice:
        case ImageWritePhase::writingImage:
            break;
    }
    return "Writing was interrupted. The SD card may contain incomplete or invalid data and was ejected when "
           "possible.";
}

}  // namespace

WriteTask::WriteTask(const std::function<void()>& onChange, const Surroundings& surroundings) :
    writeTask(onChange, std::nullopt),
    verifyAfterWrite(onChange, true),
    progress(onChange, {}),
    surroundings(surroundings) {}

void WriteTask::begin(TaskHandle task) {
    isFailureLogged = false;
    isDiskLoggedAsGone = false;
    resetWriteProgress();
    surroundings.state = TesselOperationState{.kind = TesselOperationState::Case::writingImage};
    writeTask = std::move(task);
}

void WriteTask::resetWriteProgress() {
    rate.reset();
    progress = WriteProgress();
}

void WriteTask::forgetHint() {
    auto shown = progress();
    shown.writeHint = "";
    progress = std::move(shown);
}

Task<> WriteTask::performWrite() {
    const auto outcome = co_await outcomeOf(writeSelectedImage());
    if (outcome.error()) {
        if (isCancellation(outcome.error())) {
            finishCancelledWrite();
        } else {
            finishFailedWrite(outcome.error());
        }
    }
    writeTask = std::nullopt;
}

Task<> WriteTask::writeSelectedImage() {
    co_await checkCancellation();
    const auto& selected = surroundings.image.selectedImage();
    if (!selected) throw TesselError(TesselError::Case::invalidImage);
    const auto image = *selected;
    const auto target = requireWritableTarget(image);

    auto& log = surroundings.log;
    const auto activity = surroundings.desktop.beginActivity("Writing and verifying an SD-card image");
    log.appendLog("Revalidating " + devicePath(target.id) + " immediately before the destructive operation.");
    const auto card = co_await revalidateSelectedDisk(target);
    const auto inspected = co_await ImageSelection::inspectImage(image.url);
    if (inspected.sizeBytes != image.sizeBytes) throw TesselError(TesselError::Case::imageChanged);
    if (const auto reason = imageOnDiskText(image, card)) throw TesselError::commandFailed(*reason);

    log.appendLog("Writing " + image.displayName() + " to " + rawDevicePath(card.id) +
                  ". All existing data on the SD card will be destroyed.");
    if (verifyAfterWrite()) {
        log.appendLog(
            "SHA-256 verification is enabled. Verification reads the written image length back through the "
            "same authorized raw-device descriptor.");
    }
    const auto digest = co_await surroundings.imageWriterService.write(
        {.image = image, .target = card, .verify = verifyAfterWrite()}, *this);
    finishSuccessfulWrite(card.id, digest);
}

void WriteTask::applyWriteProgress(const ImageWriteProgress& report, TransferRate::TimePoint now) {
    if (isCancellationRequested()) {
        // The text about the stop remains until the outcome replaces it.
        auto shown = progress();
        shown.currentWritePhase = report.phase;
        progress = std::move(shown);
        return;
    }
    const auto lastLoggedWritePhase = progress().currentWritePhase;
    rate.note(report, now);
    auto shown = WriteProgress::of(report);
    shown.writeTransferRate = rate.text();
    progress = std::move(shown);
    if (report.phase == lastLoggedWritePhase) return;
    if (const auto message = phaseLogMessage(report.phase)) surroundings.log.appendLog(*message);
}

void WriteTask::onProgress(const ImageWriteProgress& report) {
    applyWriteProgress(report, std::chrono::steady_clock::now());
}

void WriteTask::onFailure(const TesselError& error) {
    if (!isCancellationRequested()) logFailure(std::make_exception_ptr(error));
}

void WriteTask::onEjected(const SDWholeDisk& card) {
    ejectedDiskID = card.id;
}

SDWholeDisk WriteTask::requireWritableTarget(const SDImageFile& image) const {
    const auto* target = surroundings.targets.selectedDisk();
    if (!target) throw TesselError(TesselError::Case::noSelectedDisk);
    if (const auto reason = protectionText(*target)) throw TesselError::unsafeDisk(*reason);
    if (target->sizeBytes < image.sizeBytes) throw TesselError(TesselError::Case::imageTooLarge);
    return *target;
}

Task<SDWholeDisk> WriteTask::revalidateSelectedDisk(SDWholeDisk expected) {
    if (surroundings.targets.mayBeExchanged()) {
        surroundings.log.appendLog(
            "The computer was asleep since the disks were scanned, so that another card may have "
            "taken the place of " +
            devicePath(expected.id) + ".");
        throw TesselError(TesselError::Case::diskChanged);
    }
    auto search = co_await surroundings.diskService.findAgain(expected);
    if (!search.found) {
        surroundings.log.appendLog(revalidationFailure(expected, search));
        throw notFound(search);
    }
    if (const auto reason = protectionText(*search.found)) throw TesselError::unsafeDisk(*reason);
    ejectedDiskID = std::nullopt;
    if (search.attempts > 1) {
        surroundings.log.appendLog("Disk revalidation succeeded on attempt " +
                                   std::to_string(search.attempts) + ".");
    }
    co_return std::move(*search.found);
}

/// Shows these texts in place of the last report's.
void WriteTask::say(const std::string& title, const std::string& detail, const std::string& hint) {
    rate.reset();
    auto shown = progress();
    shown.writePhaseTitle = title;
    shown.writeProgressDetail = detail;
    shown.writeHint = hint;
    shown.writeTransferRate = "";
    progress = std::move(shown);
}

void WriteTask::finishSuccessfulWrite(const std::string& writtenDiskID, const Sha256::Digest& digest) {
    const bool verified = verifyAfterWrite();
    auto& log = surroundings.log;
    say("Safe to Remove", systemWords().cardEjected);
    surroundings.targets.forget(writtenDiskID);
    surroundings.state =
        TesselOperationState::ofWrite(verified ? WriteOutcome::writtenAndVerified : WriteOutcome::written);
    log.appendLog(verified ? "The disk image was written, verified, and the SD card was ejected."
                           : "The disk image was written and the SD card was ejected.");
    log.appendLog("The SD card is now safe to physically remove.");
    log.appendLog("SHA-256 of the image: " + hexadecimal(digest));
    showSafeToRemoveAlert(verified);
}

/// Logs a failure when it happens, since a stop that comes later replaces it as the outcome.
void WriteTask::logFailure(const std::exception_ptr& error) {
    if (isFailureLogged || isCancellation(error)) return;
    if (isDiskGone(error)) onDiskGone();
    surroundings.log.appendLog(error);
    isFailureLogged = true;
}

void WriteTask::onDiskGone() {
    const auto& id = surroundings.targets.selectedDiskID();
    // An eject that seemed to fail may have released the card nevertheless.
    if (progress().currentWritePhase == ImageWritePhase::ejecting) ejectedDiskID = id;
    if (isDiskLoggedAsGone || ejectedDiskID == id) return;
    surroundings.log.appendLog(devicePath(id) +
                               " is gone: the SD card was removed, or its reader was disconnected.");
    isDiskLoggedAsGone = true;
}

/// Keeps the progress, the list and the target, so that the user can try again once the cause is fixed.
void WriteTask::finishFailedWrite(const std::exception_ptr& error) {
    const std::string hint = ejectedDiskID == surroundings.targets.selectedDiskID() ? cardEjected : "";
    say(progress().failurePhaseTitle(), localizedDescription(error), hint);
    surroundings.state = TesselOperationState::ofWrite(WriteOutcome::failed);
    logFailure(error);
    if (!hint.empty()) surroundings.log.appendLog(hint);
    surroundings.desktop.requestUserAttention(
        {.title = progress().writePhaseTitle, .text = progress().writeProgressDetail});
}

void WriteTask::finishCancelledWrite() {
    const auto phase = progress().currentWritePhase;
    const auto message = cancellationMessage(phase);
    const std::string hint =
        phase >= ImageWritePhase::writingImage ? "" : "Nothing was written to the SD card.";
    const auto target = surroundings.targets.selectedDiskID();
    surroundings.targets.forget(target);
    say("Operation Cancelled", message, hint);
    surroundings.state = TesselOperationState::ofWrite(WriteOutcome::cancelled);
    surroundings.log.appendLog("Operation cancelled. " + message);
    surroundings.log.appendLog("Refresh the disk list before attempting another write.");
    if (!hint.empty()) surroundings.log.appendLog(hint);
    // A user who pressed Stop knows why the write ended, unless it had failed already.
    if (!isCancellationRequested() || isFailureLogged)
        surroundings.desktop.requestUserAttention({.title = "Operation Cancelled", .text = message});
}

bool WriteTask::canRequestStop() const {
    const auto phase = progress().currentWritePhase;
    return exists() && surroundings.state().kind == TesselOperationState::Case::writingImage &&
           !isCancellationRequested() && phase != ImageWritePhase::ejecting &&
           phase != ImageWritePhase::completed;
}

void WriteTask::requestStop() {
    const auto& running = writeTask();
    if (!running || !canRequestStop()) return;
    auto task = *running;
    task.cancel();
    say("Stopping Operation",
        "Stopping at the next safe checkpoint, closing the raw device, and ejecting the SD card when "
        "possible.");
    surroundings.log.appendLog(
        "Stop requested. The operation will stop at the next safe checkpoint, and the SD card will be "
        "ejected when possible.");
}

void WriteTask::showSafeToRemoveAlert(bool verified) const {
    const std::string message = "SD Card Is Safe to Remove";
    const auto text = std::string("The disk image was written ") +
                      (verified ? "and verified successfully. " : "successfully. ") +
                      systemWords().cardEjectedAfterWrite;
    auto& desktop = surroundings.desktop;
    desktop.beep();
    desktop.requestUserAttention({.title = message, .text = text});
    desktop.presentAlert({.message = message,
                          .informativeText = text,
                          .button = "Done",
                          .symbol = "eject.circle.fill",
                          .symbolDescription = "Safe to remove"});
}

}  // namespace tessel
