#include "app/StatusTexts.h"

#include <cmath>

#include "views/controls/ProgressBar.h"

namespace tessel {

QString statusTitle(const TesselOperationState& state) {
    using enum TesselOperationState::Case;
    switch (state.kind) {
        case idle:
            return "Ready";
        case selectingImage:
            return "Selecting Disk Image";
        case scanningDisks:
            return "Scanning Disks";
        case writingImage:
            return "Writing Disk Image";
        case completed:
        case warning:
        case failed:
            break;
    }
    return QString::fromStdString(state.text);
}

Tone statusColor(const TesselOperationState& state) {
    using enum TesselOperationState::Case;
    switch (state.kind) {
        case selectingImage:
        case scanningDisks:
            return Tone::blue;
        case writingImage:
        case warning:
            return Tone::orange;
        case completed:
            return Tone::green;
        case failed:
            return Tone::red;
        case idle:
            break;
    }
    return Tone::secondary;
}

QString liveStatusTitle(const TesselViewModel& viewModel) {
    return viewModel.write().isCancellationRequested() ? stoppingTitle : statusTitle(viewModel.state());
}

QString progressHint(const TesselViewModel& viewModel) {
    const bool isAsking = viewModel.progress().currentWritePhase == ImageWritePhase::authorizingDevice;
    if (!viewModel.write().isCancellationRequested() || !isAsking)
        return QString::fromStdString(viewModel.progress().writeHint);
    return "The dialog that asks for the password can't be withdrawn. Answer or cancel it, and the operation "
           "stops.";
}

QString announcement(const TesselViewModel& viewModel) {
    const auto& state = viewModel.state();
    const auto hint = progressHint(viewModel);
    if (!viewModel.write().exists()) {
        QStringList sentences;
        // A stop before the first byte has a sentence of its own, which takes the place of the detail.
        if (state.writeOutcome == WriteOutcome::failed ||
            (state.writeOutcome == WriteOutcome::cancelled && hint.isEmpty()))
            sentences << QString::fromStdString(viewModel.progress().writeProgressDetail);
        if (state.writeOutcome && !hint.isEmpty()) sentences << hint;
        return sentences.isEmpty() ? statusTitle(state) : statusTitle(state) + ". " + sentences.join(" ");
    }
    if (viewModel.write().isCancellationRequested()) return QString(stoppingTitle) + ". " + hint;
    const double quarters = std::floor(viewModel.progress().writeOperationProgress * 4) / 4;
    const auto title = QString::fromStdString(viewModel.progress().writePhaseTitle);
    const auto phase = viewModel.progress().currentWritePhase;
    const bool countsBytes =
        phase == ImageWritePhase::writingImage || phase == ImageWritePhase::verifyingImage;
    return countsBytes && quarters > 0 ? title + ", more than " + percentText(quarters) : title;
}

QString percentText(double fraction) {
    return QString::number(percentage(fraction)) + "%";
}

QString liveWindowTitle(const TesselViewModel& viewModel) {
    QString title = "Velmora Tessel";
    if (!viewModel.write().exists()) return title;
    return percentText(viewModel.progress().writeOperationProgress) + " – " + title;
}

}  // namespace tessel
