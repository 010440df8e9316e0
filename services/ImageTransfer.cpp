#include "services/ImageTransfer.h"

#include <optional>

#include "foundation/Sha256.h"
#include "model/TesselError.h"
#include "services/ImageReader.h"
#include "services/MediumReader.h"
#include "services/RawDeviceCalls.h"

namespace tessel {

namespace {

using enum ImageWritePhase;

/// The size of a chunk in bytes: a whole number of blocks, whatever size a card's blocks have.
constexpr size_t chunkSize = size_t{8} << 20;

Sha256::Digest transferImage(const ImageTransfer& transfer, const std::stop_token& stop,
                             const ImageWriteProgressHandler& report) {
    const auto size = transfer.imageSize;
    if (size == 0) throw TesselError(TesselError::Case::imageUnavailable);
    if (!transfer.handle.holds(size)) throw TesselError(TesselError::Case::imageTooLarge);

    RawDevice& device = *transfer.handle.device;
    const ChunkGeometry geometry{
        .imageSize = size, .blockSize = transfer.handle.blockSize, .chunkSize = chunkSize};
    ImageReader image(transfer.imageURL, geometry, stop);
    std::optional<MediumReader> medium;
    if (transfer.verify) medium.emplace(device, geometry);

    report({writingImage, 0, size});
    for (uint64_t written = 0; written < size;) {
        const auto chunk = image.next(stop);
        writeToDevice(device, chunk.padded, written);
        written += chunk.bytes.size();
        report({writingImage, written, size});
    }
    const auto writtenDigest = image.finishPass(stop);

    report({synchronizing, size, size});
    synchronizeDevice(device);
    device.requireUndisturbed();
    if (!medium) return writtenDigest;

    // A refusal does no harm, because caching has been off since the device was opened.
    static_cast<void>(device.disableCaching());
    report({verifyingImage, 0, size});
    for (uint64_t verified = 0; verified < size;) {
        const auto chunk = image.next(stop);
        medium->readMatching(chunk, verified, stop);
        verified += chunk.bytes.size();
        report({verifyingImage, verified, size});
    }
    if (image.finishPass(stop) != writtenDigest) throw TesselError(TesselError::Case::imageChanged);
    if (medium->finishDigest() != writtenDigest) {
        throw TesselError::commandFailed(
            "The written bytes matched during verification, but the final SHA-256 digest comparison did not "
            "match.");
    }
    // What another program has written through the cache reaches the medium, and is counted, only now.
    synchronizeDevice(device);
    device.requireUndisturbed();
    return writtenDigest;
}

}  // namespace

Sha256::Digest writeImage(const ImageTransfer& transfer, const std::stop_token& stop,
                          const ImageWriteProgressHandler& report) {
    try {
        return transferImage(transfer, stop, report);
    } catch (const DisturbedMediumError& error) {
        throw disturbanceFailure(error);
    }
}

}  // namespace tessel
