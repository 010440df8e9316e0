#include "services/ImageWriterService.h"

#include <chrono>
#include <utility>

#include "foundation/Errors.h"
#include "model/SDCardPolicy.h"
#include "model/TesselError.h"
#include "platform/Files.h"
#include "platform/concurrency/Background.h"

namespace tessel {

namespace {

using enum ImageWritePhase;

constexpr std::chrono::seconds commandTimeout{60};
/// Somebody waits for the failure or the stop to be over; a healthy card ejects within a second or two.
constexpr std::chrono::seconds bestEffortTimeout{20};

/// The image must still be the regular file of the size that was selected.
void verifyImageUnchanged(const SDImageFile& image) {
    const auto status = fileStatus(image.url);
    if (!status.isRegularFile) throw TesselError(TesselError::Case::imageUnavailable);
    if (status.sizeBytes != image.sizeBytes || image.sizeBytes == 0) {
        throw TesselError(TesselError::Case::imageChanged);
    }
}

/// The error to report for one that ended a write.
[[noreturn]] void throwReported(const std::exception_ptr& error, bool wasCancelled) {
    if (wasCancelled) throw TesselError(TesselError::Case::operationCancelled);
    try {
        std::rethrow_exception(error);
    } catch (const CancellationError&) {
        throw TesselError(TesselError::Case::operationCancelled);
    } catch (const TesselError&) {
        throw;
    } catch (const std::exception&) {
        throw TesselError::commandFailed("The authorized image write failed: " + localizedDescription(error));
    }
}

/// Blocks its thread while the authorization prompt is open, which can't be withdrawn.
Task<AuthorizedRawDiskHandle> authorize(RawDiskOpener opener, std::string rawDevicePath) {
    co_await checkCancellation();
    auto handle = opener.openAuthorizedRawDisk(rawDevicePath);
    co_await checkCancellation();
    co_return handle;
}

/// Calls the handler where this task runs; a plain call would be made where the task is created.
Task<> callHandler(const ImageWriteProgressHandler& handler, ImageWriteProgress report) {
    co_await handler(report);
}

}  // namespace

Task<> ImageWriterService::write(Write request, ImageWriteProgressHandler progress) const {
    co_await checkCancellation();
    if (const auto reason = eligibilityFailureReason(request.target)) throw TesselError::unsafeDisk(*reason);

    auto prepared = co_await outcomeOf(prepareTarget(request, progress));
    if (prepared.error()) throwReported(prepared.error(), co_await isCancelled());

    const auto card = std::move(prepared).value();
    const auto written = co_await outcomeOf(writeUnmountedCard(request, card, progress));
    if (written.error()) {
        co_await ejectWhenPossible("/dev/" + card.id);
        throwReported(written.error(), co_await isCancelled());
    }
}

/// Everything up to the unmount. A failure here leaves the card as it was.
Task<SDWholeDisk> ImageWriterService::prepareTarget(const Write& request,
                                                    const ImageWriteProgressHandler& progress) const {
    verifyImageUnchanged(request.image);
    co_await checkCancellation();
    auto card = co_await diskService.revalidateDisk(request.target);
    co_await checkCancellation();
    if (card.sizeBytes < request.image.sizeBytes) throw TesselError(TesselError::Case::imageTooLarge);
    co_await progress({preparingTarget, 0, request.image.sizeBytes});
    co_await checkCancellation();
    co_await require({"unmountDisk", "force", "/dev/" + card.id},
                     "The selected SD card could not be unmounted.");
    co_return card;
}

/// Everything from the unmount on. A failure here is followed by an eject.
Task<> ImageWriterService::writeUnmountedCard(const Write& request, const SDWholeDisk& card,
                                              const ImageWriteProgressHandler& progress) const {
    const auto imageSize = request.image.sizeBytes;
    co_await checkCancellation();
    co_await progress({authorizingDevice, 0, imageSize});
    co_await checkCancellation();
    co_await transferImage(request, card, progress);
    co_await checkCancellation();
    co_await progress({ejecting, imageSize, imageSize});
    co_await require({"eject", "/dev/" + card.id},
                     "The image was written, but the SD card could not be ejected.");
    co_await progress({completed, imageSize, imageSize});
}

/// Opens the card, proves that it is still the same one, and writes it. It is closed on every way out.
Task<> ImageWriterService::transferImage(const Write& request, const SDWholeDisk& card,
                                         const ImageWriteProgressHandler& progress) const {
    const auto background = Home::background(mainThread);
    const auto handle = co_await withForwardedCancellation(
        startTask(background, Priority::userInitiated, authorize(opener, "/dev/r" + card.id)));
    co_await checkCancellation();
    const auto revalidated = co_await diskService.revalidateDisk(card);
    co_await checkCancellation();
    if (!handle.hasCapacity(revalidated.sizeBytes)) throw TesselError(TesselError::Case::diskChanged);
    verifyImageUnchanged(request.image);
    co_await checkCancellation();

    const ImageTransfer transfer{.imageURL = request.image.url,
                                 .imageSize = request.image.sizeBytes,
                                 .handle = handle,
                                 .verify = request.verify};
    const auto progressOnMain = [&progress](ImageWriteProgress report) {
        return onMain(callHandler(progress, report));
    };
    co_await withForwardedCancellation(
        startTask(background, Priority::userInitiated, writeImage(transfer, progressOnMain)));
}

/// Runs a disk-utility command that must succeed.
Task<> ImageWriterService::require(std::vector<std::string> arguments, std::string fallback) const {
    const auto result = co_await diskService.runDiskutil(std::move(arguments), commandTimeout);
    if (result.status != 0) throw TesselError::commandFailed(result.failureMessage(fallback));
}

/// Not stopped by a stop request: the person is about to pull the card.
Task<> ImageWriterService::ejectWhenPossible(std::string devicePath) const {
    const auto eject =
        startTask(Home::main(mainThread), Priority::utility,
                  diskService.runDiskutil({"eject", std::move(devicePath)}, bestEffortTimeout));
    co_await outcomeOf(eject.value());
}

}  // namespace tessel
