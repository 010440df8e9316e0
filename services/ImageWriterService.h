#pragma once

#include <string>
#include <utility>
#include <vector>

#include "foundation/Sha256.h"
#include "model/SDImageFile.h"
#include "model/SDWholeDisk.h"
#include "platform/concurrency/Task.h"
#include "services/AuthorizedRawDisk.h"
#include "services/DiskService.h"
#include "services/ImageTransfer.h"

namespace tessel {

/// Receives the events of a write, on the main thread.
class ImageWriteListener {
  public:
    virtual ~ImageWriteListener() = default;

    virtual void onProgress(const ImageWriteProgress& report) = 0;
    /// Receives the error as soon as an unmounted card could not be written to its end. The card is ejected
    /// only after that, and what is thrown in the end may be a cancellation that came meanwhile.
    virtual void onFailure(const TesselError& error) = 0;
    /// Follows onFailure() if the card was ejected.
    virtual void onEjected(const SDWholeDisk& card) = 0;
    /// Follows onFailure() if the card could not be ejected because it is no longer there.
    virtual void onDiskGone() = 0;
};

/// Runs one complete destructive write. It is stateless. Its steps run on the main thread, while looking at
/// the image, the authorization, the transfer and the closing of the card block threads of their own. Once
/// the card is unmounted, it is ejected on every way out, if possible.
class ImageWriterService {
  public:
    struct Write {
        SDImageFile image;
        SDWholeDisk target;  ///< the record of the last revalidation
        bool verify;         ///< whether the card is read back after writing
    };

    ImageWriterService(DiskService diskService, RawDiskOpener opener) :
        diskService(std::move(diskService)),
        opener(std::move(opener)) {}

    /// Writes the image, flushes it and, if requested, verifies it, and then ejects the card. Returns the
    /// digest of the image. Throws TesselError, which is operationCancelled after a stop or a dismissed
    /// prompt, and CancellationError if the task is cancelled before it begins. The listener must outlive the
    /// write.
    Task<Sha256::Digest> write(Write request, ImageWriteListener& listener) const;

  private:
    Task<SDWholeDisk> prepareTarget(const Write& request, ImageWriteListener& listener) const;
    Task<Sha256::Digest> writeUnmountedCard(const Write& request, const SDWholeDisk& card,
                                            ImageWriteListener& listener) const;
    Task<Sha256::Digest> writeOpenCard(const Write& request, const SDWholeDisk& card,
                                       const AuthorizedRawDiskHandle& handle,
                                       ImageWriteListener& listener) const;
    Task<> ejectWhenPossible(const SDWholeDisk& card, ImageWriteListener& listener) const;
    Task<> require(std::vector<std::string> arguments, std::string fallback) const;

    DiskService diskService;
    RawDiskOpener opener;
};

}  // namespace tessel
