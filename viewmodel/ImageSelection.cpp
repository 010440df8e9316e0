#include <algorithm>
#include <string_view>

#include "foundation/ByteCount.h"
#include "foundation/Text.h"
#include "model/SDCardPolicy.h"
#include "model/TesselError.h"
#include "platform/Files.h"
#include "viewmodel/TesselViewModel.h"

namespace tessel {

namespace {

constexpr std::string_view allowedImageExtensions[] = {"img", "raw", "bin"};

bool hasAllowedExtension(const std::filesystem::path& url) {
    const auto extension = lowercased(url.extension().string());
    return std::ranges::any_of(allowedImageExtensions, [&extension](std::string_view allowed) {
        return extension == "." + std::string(allowed);
    });
}

}  // namespace

SDImageFile inspectImage(const std::filesystem::path& url) {
    if (!hasAllowedExtension(url)) throw TesselError(TesselError::Case::invalidImage);
    const auto status = fileStatus(url);
    if (!status.isRegularFile || status.sizeBytes == 0)
        throw TesselError(TesselError::Case::imageUnavailable);
    return {.url = url, .sizeBytes = status.sizeBytes};
}

void TesselViewModel::chooseImage() {
    if (isBusy()) return;
    state = {TesselOperationState::Case::selectingImage, ""};
    const auto file = desktop.runOpenPanel(
        {.title = "Select a Raw Disk Image",
         .prompt = "Select Image",
         .message = "Choose an uncompressed raw disk image with an .img, .raw, or .bin extension.",
         .extensions = {std::begin(allowedImageExtensions), std::end(allowedImageExtensions)}});
    if (file) {
        applyChosenImage(*file);
    } else {
        state = TesselOperationState();
        appendLog("Image selection was cancelled.");
    }
}

void TesselViewModel::applyChosenImage(const std::filesystem::path& file) {
    try {
        const auto image = inspectImage(file);
        selectedImage = image;
        resetWriteProgress();
        state = TesselOperationState::completed("Disk image selected");
        appendLog("Selected image: " + image.displayPath() + " (" + byteCountText(image.sizeBytes) + ").");
        appendLog(
            "The selected file extension is supported. Confirm that the file contains the intended raw disk "
            "image before writing.");
    } catch (const std::exception&) {
        state = TesselOperationState::failed("Image selection failed");
        logError(std::current_exception());
    }
}

bool TesselViewModel::canStartWrite() const {
    const auto* target = selectedDisk();
    return selectedImage() && target && !isBusy() && !eligibilityFailureReason(*target) &&
           selectedImage()->sizeBytes != 0 && target->sizeBytes >= selectedImage()->sizeBytes;
}

}  // namespace tessel
