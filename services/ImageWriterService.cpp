#include "services/ImageWriterService.h"

#include <chrono>
#include <utility>

#include "foundation/Errors.h"
#include "model/DiskTexts.h"
#include "model/TesselError.h"
#include "platform/Files.h"
#include "platform/concurrency/Background.h"
#include "services/HelperThread.h"

namespace tessel {

namespace {

using enum ImageWritePhase;

constexpr std::chrono::seconds commandTimeout{60};

/// Throws TesselError unless the image is still the regular file of the size that was selected.
Task<> verifyImageUnchanged(SDImageFile image) {
    const auto status = co_await inBackground(interruptible([url = image.url] { return fileStatus(url); }));
    if (!status.isRegularFile) throw TesselError(TesselError::Case::imageUnavailable);
    if (status.sizeBytes != image.sizeBytes || image.sizeBytes == 0) {
        throw TesselError(TesselError::Case::imageChanged);
    }
}

TesselError cancelled() {
    return TesselError(TesselError::Case::operationCancelled);
}

/// Returns the error to throw in place of the one that ended a write.
TesselError mapped(const std::exception_ptr& error) {
    if (errorOfType<CancellationError>(error)) return cancelled();
    if (const auto own = errorOfType<TesselError>(error)) return *own;
    return TesselError::commandFailed("The authorized image write failed: " + localizedDescription(error));
}

/// Closes the card off the main thread, because that may take half a minute for a card in error recovery.
Task<> close(AuthorizedRawDiskHandle handle) {
    co_await inBackground([&handle](const std::stop_token&) { handle.device.reset(); });
}

}  // namespace

Task<Sha256::Digest> ImageWriterService::write(Write request, ImageWriteListener& listener) const {
    co_await checkCancellation();
    if (const auto reason = protectionText(request.target)) throw TesselError::unsafeDisk(*reason);

    auto prepared = co_await outcomeOf(prepareTarget(request, listener));
    if (prepared.error()) throw co_await isCancelled() ? cancelled() : mapped(prepared.error());

    const auto card = std::move(prepared).value();
    auto written = co_await outcomeOf(writeUnmountedCard(request, card, listener));
    if (written.error()) {
        const auto error = mapped(written.error());
        listener.onFailure(error);
        co_await ejectWhenPossible(card, listener);
        throw co_await isCancelled() ? cancelled() : error;
    }
    co_return std::move(written).value();
}

/// Takes all the steps up to the unmount. A failure here leaves the card as it was.
Task<SDWholeDisk> ImageWriterService::prepareTarget(const Write& request,
                                                    ImageWriteListener& listener) const {
    co_await verifyImageUnchanged(request.image);
    auto card = co_await diskService.revalidateDisk(request.target);
    if (card.sizeBytes < request.image.sizeBytes) throw TesselError(TesselError::Case::imageTooLarge);
    listener.onProgress({preparingTarget, 0, request.image.sizeBytes});
    co_await checkCancellation();
    std::vector<std::string> unmount{"unmountDisk", "force", devicePath(card.id)};
    co_await require(std::move(unmount), "The selected SD card could not be unmounted.");
    co_return card;
}

/// Takes all the steps after the unmount. A failure here is followed by an eject.
Task<Sha256::Digest> ImageWriterService::writeUnmountedCard(const Write& request, const SDWholeDisk& card,
                                                            ImageWriteListener& listener) const {
    const auto imageSize = request.image.sizeBytes;
    co_await checkCancellation();
    listener.onProgress({authorizingDevice, 0, imageSize});
    co_await checkCancellation();
    // A stop does not end this wait, since the authorization prompt can't be withdrawn.
    auto handle = co_await inBackground(
        [&](const std::stop_token&) { return opener.openAuthorizedRawDisk(rawDevicePath(card.id)); });
    auto transferred = co_await outcomeOf(writeOpenCard(request, card, handle, listener));
    co_await outcomeOf(close(std::move(handle)));
    const auto digest = std::move(transferred).value();
    co_await checkCancellation();
    listener.onProgress({ejecting, imageSize, imageSize});
    std::vector<std::string> eject{"eject", devicePath(card.id)};
    co_await require(std::move(eject), "The image was written, but the SD card could not be ejected.");
    listener.onProgress({completed, imageSize, imageSize});
    co_return digest;
}

/// Proves that the open card is still the same one, and writes the image to it.
Task<Sha256::Digest> ImageWriterService::writeOpenCard(const Write& request, const SDWholeDisk& card,
                                                       const AuthorizedRawDiskHandle& handle,
                                                       ImageWriteListener& listener) const {
    const auto revalidated = co_await diskService.revalidateDisk(card);
    if (!handle.hasCapacity(revalidated.sizeBytes)) throw TesselError(TesselError::Case::diskChanged);
    co_await verifyImageUnchanged(request.image);

    const ImageTransfer transfer{.imageURL = request.image.url,
                                 .imageSize = request.image.sizeBytes,
                                 .handle = handle,
                                 .verify = request.verify};
    const auto context = co_await currentContext();
    const auto reportOnMainThread = [&](const ImageWriteProgress& progress) {
        context.mainThread->call([&] { listener.onProgress(progress); });
    };
    co_return co_await inBackground(
        [&](const std::stop_token& stop) { return writeImage(transfer, stop, reportOnMainThread); });
}

/// Ejects the card that could not be written. The user is about to pull it, so a stop does not interrupt
/// this, and its own failure is not reported.
Task<> ImageWriterService::ejectWhenPossible(const SDWholeDisk& card, ImageWriteListener& listener) const {
    std::vector<std::string> eject{"eject", devicePath(card.id)};
    const auto ejected = co_await outcomeOf(require(std::move(eject), ""));
    if (!ejected.error()) {
        listener.onEjected(card);
    } else if (co_await diskService.isGone(card.id)) {
        listener.onDiskGone();
    }
}

/// Runs a disk-utility command, and throws commandFailed if it does not succeed.
Task<> ImageWriterService::require(std::vector<std::string> arguments, std::string fallback) const {
    const auto result = co_await diskService.runDiskutil(std::move(arguments), commandTimeout);
    if (result.status != 0) throw TesselError::commandFailed(result.failureMessage(fallback));
}

}  // namespace tessel
