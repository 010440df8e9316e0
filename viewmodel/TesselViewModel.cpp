#include "viewmodel/TesselViewModel.h"

#include <algorithm>

#include "model/TesselError.h"
#include "platform/TimeOfDay.h"

namespace tessel {

std::shared_ptr<TesselViewModel> TesselViewModel::create(Environment environment) {
    return std::shared_ptr<TesselViewModel>(new TesselViewModel(std::move(environment)));
}

TesselViewModel::TesselViewModel(Environment environment) :
    mainThread(environment.mainThread),
    desktop(environment.desktop),
    diskService(environment.utilities),
    imageWriterService(environment.mainThread, environment.utilities, std::move(environment.makeDevice)) {}

const SDWholeDisk* TesselViewModel::selectedDisk() const {
    const auto found = std::ranges::find(disks(), selectedDiskID(), &SDWholeDisk::id);
    return found == disks().end() ? nullptr : &*found;
}

void TesselViewModel::appendLog(const std::string& message) {
    auto line = "[" + timeOfDayText() + "] " + message;
    logLines.modify([&line](auto& lines) { lines.push_back(std::move(line)); });
}

void TesselViewModel::logError(const std::exception_ptr& error) {
    appendLog("Error: " + localizedDescription(error));
}

void TesselViewModel::setVerifyAfterWrite(bool verify) {
    if (!isBusy()) verifyAfterWrite = verify;
}

void TesselViewModel::clearLog() {
    if (isBusy()) return;
    joinedLog = {};
    logLines = {};
}

const std::string& TesselViewModel::logText() const {
    static const std::string emptyLogText = "No operation messages yet.";
    const auto& lines = logLines();
    for (; joinedLog.count < lines.size(); ++joinedLog.count) {
        if (joinedLog.count > 0) joinedLog.text += '\n';
        joinedLog.text += lines[joinedLog.count];
    }
    return lines.empty() ? emptyLogText : joinedLog.text;
}

bool TesselViewModel::isSuccessfulCompletion() const {
    return state() == TesselOperationState::completed("Image written") ||
           state() == TesselOperationState::completed("Image written and verified");
}

double TesselViewModel::overallWorkflowProgress() const {
    if (isSuccessfulCompletion()) return 1.0;
    if (state().kind == TesselOperationState::Case::writingImage || writeOperationProgress() > 0) {
        return std::min(0.4 + 0.6 * writeOperationProgress(), 1.0);
    }
    return (selectedImage() ? 0.2 : 0.0) + (selectedDisk() ? 0.2 : 0.0);
}

}  // namespace tessel
