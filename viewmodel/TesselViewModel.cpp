#include "viewmodel/TesselViewModel.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "foundation/ByteCount.h"
#include "foundation/Errors.h"
#include "foundation/Text.h"
#include "model/DiskTexts.h"
#include "model/SystemWords.h"
#include "model/TesselError.h"
#include "viewmodel/ScanSummary.h"

namespace tessel {

using enum TesselOperationState::Case;

std::shared_ptr<TesselViewModel> TesselViewModel::create(Environment environment) {
    return std::shared_ptr<TesselViewModel>(new TesselViewModel(std::move(environment)));
}

TesselViewModel::TesselViewModel(Environment environment) :
    mainThread(std::move(environment.mainThread)),
    desktop(environment.desktop),
    diskService(std::move(environment.diskService)),
    imageWriterService(std::move(environment.imageWriterService)) {}

/// Starts an operation. Once it has begun it keeps the view model alive, so that it always reaches its end.
template <typename... Arguments>
TaskHandle TesselViewModel::start(Task<> (TesselViewModel::*operation)(Arguments...),
                                  Arguments... arguments) {
    const auto run = [](std::weak_ptr<TesselViewModel> weakViewModel,
                        Task<> (TesselViewModel::*begun)(Arguments...), Arguments... its) -> Task<> {
        if (const auto viewModel = weakViewModel.lock())
            co_await (viewModel.get()->*begun)(std::move(its)...);
    };
    return startTask(mainThread, run(weak_from_this(), operation, std::move(arguments)...));
}

void TesselViewModel::clearLog() {
    if (!isBusy()) operationLog.clear();
}

void TesselViewModel::refreshDisks() {
    if (isBusy()) return;
    hasStartedScan = true;
    disksChanged = false;
    operationState = TesselOperationState{.kind = scanningDisks};
    operationLog.appendLog(systemWords().scanStarted);
    start(&TesselViewModel::scanDisks);
}

Task<> TesselViewModel::scanDisks() {
    const SleepWatch sinceScan;
    auto scan = co_await outcomeOf(diskService.scanDisks());
    if (scan.error()) {
        operationState = TesselOperationState::failed("Disk scan failed");
        operationLog.appendLog(scan.error());
        co_return;
    }
    targetSelection.replaceDisks(std::move(scan).value(), sinceScan);
    currentWrite.forgetHint();
    const auto summary = ScanSummary::of(targetSelection.disks());
    operationState = summary.state;
    for (const auto& message : summary.messages)
        operationLog.appendLog(message);
}

void TesselViewModel::noteDiskChange(const DiskChange& change) {
    // Only at the end of a write it is known whether the program has ejected the disk itself.
    if (change.hasGone && write().exists()) {
        goneDuringWrite.push_back(change);
    } else if (isNews(change)) {
        disksChanged = true;
    }
}

/// Returns whether the list of disks would look different after another scan, as far as is known.
bool TesselViewModel::isNews(const DiskChange& change) const {
    if (!change.hasGone || state().kind == scanningDisks) return true;
    const auto mayBeIt = [&](const SDWholeDisk& disk) {
        if (disk.systemName) return systemDeviceName(*disk.systemName) == change.systemName;
        return disk.id == change.systemName || !isWholeDiskIdentifier(change.systemName);
    };
    return std::ranges::any_of(targets().disks(), [&](const SDWholeDisk& disk) {
        return mayBeIt(disk) && !write().hasEjected(disk.id);
    });
}

void TesselViewModel::selectDisk(const std::string& id) {
    const auto* disk = isBusy() ? nullptr : targetSelection.select(id);
    if (!disk) return;
    currentWrite.resetWriteProgress();
    operationState = TesselOperationState::completed("Target " + id + " selected");
    operationLog.appendLog("Selected SD-card target: " + disk->displaySummary() + " · " +
                           disk->partitionCountText() + ".");
}

void TesselViewModel::chooseImage() {
    if (isBusy()) return;
    operationState = TesselOperationState{.kind = selectingImage};
    imageChoice = start(&TesselViewModel::runOpenPanel);
}

Task<> TesselViewModel::runOpenPanel() {
    if (const auto file = co_await desktop.runOpenPanel(ImageSelection::openPanel())) {
        co_await takeImage(ImageSelection::inspectLinkedImage(*file));
    } else {
        noteCancelledChoice();
    }
}

void TesselViewModel::chooseImage(const std::filesystem::path& file) {
    if (isBusy()) return;
    operationState = TesselOperationState{.kind = selectingImage};
    imageChoice = start(&TesselViewModel::takeImage, ImageSelection::inspectLinkedImage(file));
}

void TesselViewModel::cancelImageChoice() {
    if (imageChoice) imageChoice->cancel();
}

Task<> TesselViewModel::takeImage(Task<SDImageFile> inspection) {
    try {
        const auto selected = co_await std::move(inspection);
        imageSelection.selectedImage = selected;
        currentWrite.resetWriteProgress();
        operationState = TesselOperationState::completed("Disk image selected");
        operationLog.appendLog("Selected image: " + selected.displayPath() + " (" +
                               byteCountText(selected.sizeBytes) + ").");
        operationLog.appendLog(
            "The selected file extension is supported. Confirm that the file contains the intended raw disk "
            "image before writing.");
    } catch (const CancellationError&) {
        noteCancelledChoice();
    } catch (const std::exception&) {
        operationState = TesselOperationState::failed("Image selection failed");
        operationLog.appendLog(std::current_exception());
    }
}

void TesselViewModel::noteCancelledChoice() {
    operationState = TesselOperationState();
    operationLog.appendLog("Image selection was cancelled.");
}

void TesselViewModel::setVerifyAfterWrite(bool verify) {
    if (!isBusy()) currentWrite.verifyAfterWrite = verify;
}

std::optional<std::string> TesselViewModel::writeObstacle() const {
    const auto& chosen = image().selectedImage();
    const auto* target = targets().selectedDisk();
    if (!chosen) return TesselError(TesselError::Case::invalidImage).localizedDescription();
    if (!target) return TesselError(TesselError::Case::noSelectedDisk).localizedDescription();
    if (isBusy()) return "Another operation is running.";
    if (const auto reason = protectionText(*target))
        return TesselError::unsafeDisk(*reason).localizedDescription();
    if (chosen->sizeBytes == 0) return "The selected image is empty.";
    if (target->sizeBytes < chosen->sizeBytes)
        return TesselError(TesselError::Case::imageTooLarge).localizedDescription();
    return std::nullopt;
}

void TesselViewModel::startWrite() {
    if (write().exists() || isBusy()) return;
    currentWrite.begin(start(&TesselViewModel::performWrite));
}

Task<> TesselViewModel::performWrite() {
    co_await currentWrite.performWrite();
    for (const auto& change : std::exchange(goneDuringWrite, {}))
        if (isNews(change)) disksChanged = true;
}

double TesselViewModel::overallWorkflowProgress() const {
    if (state().isSuccessfulCompletion()) return 1.0;
    const double written = progress().writeOperationProgress;
    if (state().kind == writingImage || written > 0) return std::min(0.4 + 0.6 * written, 1.0);
    return (image().selectedImage() ? 0.2 : 0.0) + (targets().selectedDisk() ? 0.2 : 0.0);
}

}  // namespace tessel
