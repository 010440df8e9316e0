#include "services/ImageSource.h"

#include <cerrno>
#include <string>

#include "foundation/Errors.h"
#include "model/TesselError.h"
#include "platform/Transfer.h"
#include "services/RawDeviceCalls.h"

namespace tessel {

namespace {

ReadOnlyFile openImageForReading(const std::filesystem::path& url, uint64_t expectedSize) {
    ReadOnlyFile file;
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
    return file;
}

}  // namespace

ImageSource::ImageSource(const std::filesystem::path& url, uint64_t expectedSize) :
    file(openImageForReading(url, expectedSize)),
    expectedSize(expectedSize) {}

void ImageSource::read(std::span<std::byte> bytes, uint64_t offset) const {
    try {
        file.read(bytes, offset);
    } catch (const TransferError& error) {
        if (error.code() == 0) throw TesselError(TesselError::Case::imageChanged);
        if (error.code() == EOVERFLOW) throw offsetFailure();
        throw TesselError::commandFailed("The selected image could not be read at byte offset " +
                                         std::to_string(error.offset()) + ": " +
                                         systemErrorText(error.code()) + ".");
    }
    file.adviseFinished(offset, bytes.size());
}

void ImageSource::requireUnchangedSize() const {
    const auto size = file.size();
    if (!size.isSuccess() || size.value != expectedSize) throw TesselError(TesselError::Case::imageChanged);
}

}  // namespace tessel
