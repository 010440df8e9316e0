#pragma once

#include <string>

#include "model/SDImageFile.h"
#include "model/SDWholeDisk.h"
#include "platform/concurrency/TaskHandle.h"
#include "services/AuthorizedRawDisk.h"
#include "services/DiskService.h"
#include "services/ImageTransfer.h"
#include "services/SystemUtilities.h"

namespace tessel {

/// Runs one complete destructive write. Stateless; its steps run on the main thread, the authorization and
/// the transfer on threads of their own. Once the card is unmounted it is ejected on every way out, when
/// possible.
class ImageWriterService {
  public:
    struct Write {
        SDImageFile image;
        SDWholeDisk target;  ///< as it was revalidated last
        bool verify = true;
    };

    ImageWriterService(MainThread mainThread, const SystemUtilities& utilities, RawDeviceFactory makeDevice) :
        mainThread(std::move(mainThread)),
        diskService(utilities),
        opener(utilities.authorizationUtility, std::move(makeDevice)) {}

    /// Returns once the image was written, flushed, verified when requested, and the card ejected. To be
    /// awaited on the main thread, where `progress` is called too. Throws TesselError; a stop is
    /// operationCancelled, or CancellationError when it came before the write began.
    Task<> write(Write request, ImageWriteProgressHandler progress) const;

  private:
    Task<SDWholeDisk> prepareTarget(const Write& request, const ImageWriteProgressHandler& progress) const;
    Task<> writeUnmountedCard(const Write& request, const SDWholeDisk& card,
                              const ImageWriteProgressHandler& progress) const;
    Task<> transferImage(const Write& request, const SDWholeDisk& card,
                         const ImageWriteProgressHandler& progress) const;
    Task<> require(std::vector<std::string> arguments, std::string fallback) const;
    Task<> ejectWhenPossible(std::string devicePath) const;

    MainThread mainThread;
    DiskService diskService;
    RawDiskOpener opener;
};

}  // namespace tessel
