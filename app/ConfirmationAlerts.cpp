#include "app/ConfirmationAlerts.h"

#include <utility>

#include "foundation/ByteCount.h"
#include "model/SDWholeDisk.h"
#include "model/SystemWords.h"

namespace tessel {

namespace {

/// The dialog that asks for the password knows the card by this name only.
std::string systemNameSentence(const SDWholeDisk& disk) {
    return disk.systemName ? "\n\n" + systemWords().callsCard + *disk.systemName + "." : "";
}

/// Returns a warning with a safe answer and a dangerous one.
AlertDialog::Fields warning(const QString& message, const std::string& text, const QString& safeAnswer,
                            const QString& dangerousAnswer, std::function<void()> act) {
    return {
        .symbol = "exclamationmark.triangle.fill",
        .symbolTone = Tone::orange,
        .symbolDescription = "Warning",
        .message = message,
        .informativeText = QString::fromStdString(text),
        .actions = {
            {.title = safeAnswer},
            {.title = dangerousAnswer, .look = Button::Look::destructiveProminent, .act = std::move(act)}}};
}

}  // namespace

std::string confirmationMessage(const TesselViewModel& viewModel) {
    const auto* disk = viewModel.targets().selectedDisk();
    const auto& image = viewModel.image().selectedImage();
    if (!image || !disk) return "Select an image and a recognized SD card before continuing.";
    return "WARNING: This will permanently erase all data on the recognized SD card /dev/" + disk->id + " (" +
           disk->mediaName + ", " + sizeOrUnknown(disk->sizeBytes) + ") and write " + image->displayName() +
           " (" + byteCountText(image->sizeBytes) + "). The operation cannot be undone. " +
           (viewModel.write().verifyAfterWrite() ? "SHA-256 verification is enabled."
                                                 : "SHA-256 verification is disabled.") +
           " Administrator authentication will be requested after confirmation.\n\nUse at your own risk. The "
           "developer accepts no responsibility or liability for data loss, device damage, corrupted media, "
           "or failed or interrupted writes." +
           systemNameSentence(*disk);
}

std::string confirmationButtonTitle(const TesselViewModel& viewModel) {
    const auto* disk = viewModel.targets().selectedDisk();
    return disk ? "Erase and Write to " + disk->id : "Erase and Write";
}

AlertDialog::Fields confirmationAlert(const TesselViewModel& viewModel, std::function<void()> write) {
    return warning("Confirm Destructive Write", confirmationMessage(viewModel), "Cancel",
                   QString::fromStdString(confirmationButtonTitle(viewModel)), std::move(write));
}

AlertDialog::Fields stopAlert(const StopQuestion& question, std::function<void()> stopAndQuit) {
    return warning("A Write Is Running", question.message,
                   QString::fromStdString(question.continueButtonTitle), "Stop and Quit",
                   std::move(stopAndQuit));
}

StopQuestion stopQuestion(const TesselViewModel& viewModel) {
    const std::string quitting = closingNote;
    const bool verifies = viewModel.write().verifyAfterWrite();
    switch (viewModel.progress().currentWritePhase.value_or(ImageWritePhase::preparingTarget)) {
        case ImageWritePhase::preparingTarget:
        case ImageWritePhase::authorizingDevice:
            return {
                "Nothing has been written to the SD card yet. Closing the window stops the write at the "
                "next safe checkpoint, and then quits Velmora Tessel.",
                "Continue Writing"};
        case ImageWritePhase::writingImage:
            break;
        case ImageWritePhase::synchronizing:
        case ImageWritePhase::verifyingImage:
        case ImageWritePhase::ejecting:
        case ImageWritePhase::completed:
            return {std::string("The whole image has been written") +
                        (verifies ? ", but it has not been verified yet" : "") +
                        ". Closing the window stops the operation at the next safe checkpoint" +
                        (verifies ? ", and the SD card should then be treated as unverified. " : ". ") +
                        quitting,
                    verifies ? "Continue Verifying" : "Continue Writing"};
    }
    return {
        "Closing the window stops the write at the next safe checkpoint. The SD card will then hold "
        "incomplete data. " +
            quitting,
        "Continue Writing"};
}

}  // namespace tessel
