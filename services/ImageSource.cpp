#include "services/ImageSource.h"

#include <string>

#include "foundation/Errors.h"
#include "model/TesselError.h"
#include "services/FullTransfer.h"

namespace tessel {

ImageSource::ImageSource(const std::filesystem::path& url, uint64_t expectedSize) :
    expectedSize(expectedSize) {
    if (const auto opened = file.open(url); !opened.isSuccess()) {
        throw TesselError::commandFailed(
            "The selected image could not be opened by the application process: " +
            systemErrorText(opened.error) + ".");
    }
    const auto size = file.size();
    if (!size.isSuccess()) {
        throw TesselError::commandFailed(
            "The selected image metadata could not be read: " + systemErrorText(size.error) + ".");
    }
    if (size.value != expectedSize) throw TesselError(TesselError::Case::imageChanged);
}

void ImageSource::read(std::span<std::byte> bytes, uint64_t offset) const {
    const auto read = [this](std::span<std::byte> rest, uint64_t at) { return file.read(rest, at); };
    const auto failure = [](const SystemResult& answer, uint64_t at) {
        if (answer.isSuccess()) return TesselError(TesselError::Case::imageChanged);
        return TesselError::commandFailed("The selected image could not be read at byte offset " +
                                          std::to_string(at) + ": " + systemErrorText(answer.error) + ".");
    };
    transferFully(bytes, offset, read, failure);
    file.adviseFinished(offset, bytes.size());
}

void ImageSource::requireUnchangedSize() const {
    const auto size = file.size();
    if (!size.isSuccess() || size.value != expectedSize) throw TesselError(TesselError::Case::imageChanged);
}

}  // namespace tessel
