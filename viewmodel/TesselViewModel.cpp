#include "viewmodel/TesselViewModel.h"

#include <algorithm>
#include <chrono>
#include <exception>

#include "foundation/ByteCount.h"
#include "foundation/Errors.h"
#include "foundation/SystemWords.h"
#include "model/SDCardPolicy.h"
#include "viewmodel/ScanSummary.h"

namespace tessel {

using enum TesselOperationState::Case;

std::shared_ptr<TesselViewModel> TesselViewModel::create(const Environment& environment) {
    return std::shared_ptr<TesselViewModel>(new TesselViewModel(environment));
}

TesselViewModel::TesselViewModel(const Environment& environment) :
    mainThread(environment.mainThread),
    desktop(environment.desktop),
    diskService(environment.utilities),
    imageWriterService(environment.mainThread, environment.utilities, environment.makeDevice) {}

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
    if (!isBusy()) log.clear();
}

void TesselViewModel::refreshDisks() {
    if (isBusy()) return;
    hasStartedScan = true;
    disksChanged = false;
    operationState = TesselOperationState{.kind = scanningDisks};
    log.append(systemWords().scanStarted);
    start(&TesselViewModel::scanDisks);
}

Task<> TesselViewModel::scanDisks() {
    const SleepWatch sinceScan;
    auto scan = co_await outcomeOf(diskService.scanDisks());
    if (scan.error()) {
        operationState = TesselOperationState::failed("Disk scan failed");
        log.append(scan.error());
        co_return;
    }
    targets.replaceDisks(std::move(scan).value(), sinceScan);
    const auto summary = ScanSummary::of(disks());
    operationState = summary.state;
    for (const auto& message : summary.messages)
        log.append(message);
}

void TesselViewModel::selectDisk(const std::string& id) {
    const auto* disk = isBusy() ? nullptr : targets.select(id);
    if (!disk) return;
    progress.reset();
    operationState = TesselOperationState::completed("Target " + id + " selected");
    log.append("Selected SD-card target: " + disk->displaySummary() + " · " + disk->partitionCountText() +
               ".");
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
        image.select(selected);
        progress.reset();
        operationState = TesselOperationState::completed("Disk image selected");
        log.append("Selected image: " + selected.displayPath() + " (" + byteCountText(selected.sizeBytes) +
                   ").");
        log.append(
            "The selected file extension is supported. Confirm that the file contains the intended raw disk "
            "image before writing.");
    } catch (const CancellationError&) {
        noteCancelledChoice();
    } catch (const std::exception&) {
        operationState = TesselOperationState::failed("Image selection failed");
        log.append(std::current_exception());
    }
}

void TesselViewModel::noteCancelledChoice() {
    operationState = TesselOperationState();
    log.append("Image selection was cancelled.");
}

void TesselViewModel::setVerifyAfterWrite(bool verify) {
    if (!isBusy()) verifies = verify;
}

bool TesselViewModel::canStartWrite() const {
    const auto& chosen = selectedImage();
    const auto* target = selectedDisk();
    return chosen && target && !isBusy() && !eligibilityFailureReason(*target) && chosen->sizeBytes != 0 &&
           target->sizeBytes >= chosen->sizeBytes;
}

void TesselViewModel::startWrite() {
    if (hasWriteTask() || isBusy()) return;
    writeTask.prepare();
    writeTask.begin(start(&TesselViewModel::performWrite));
}

Task<> TesselViewModel::performWrite() {
    co_await writeTask.perform(verifyAfterWrite(),
                               [weakViewModel = weak_from_this()](const ImageWriteProgress& report) {
                                   if (const auto viewModel = weakViewModel.lock())
                                       viewModel->applyWriteProgress(report);
                               });
}

void TesselViewModel::applyWriteProgress(const ImageWriteProgress& report) {
    // The words about the stop remain until the outcome replaces them.
    if (isCancellationRequested()) return progress.notePhase(report.phase);
    if (const auto message = progress.show(report, std::chrono::steady_clock::now())) log.append(*message);
}

double TesselViewModel::overallWorkflowProgress() const {
    if (isSuccessfulCompletion()) return 1.0;
    if (state().kind == writingImage || writeOperationProgress() > 0) {
        return std::min(0.4 + 0.6 * writeOperationProgress(), 1.0);
    }
    return (selectedImage() ? 0.2 : 0.0) + (selectedDisk() ? 0.2 : 0.0);
}

}  // namespace tessel
