#pragma once

#include <exception>
#include <functional>
#include <string>

#include "model/SDImageFile.h"
#include "model/SDWholeDisk.h"
#include "platform/SystemUtilities.h"
#include "platform/concurrency/Task.h"
#include "services/AuthorizedRawDisk.h"
#include "services/DiskService.h"
#include "services/ImageTransfer.h"

namespace tessel {

/// Runs one complete destructive write. It is stateless. Its steps run on the main thread, while looking at
/// the image, the authorization, the transfer and the closing of the card block threads of their own. Once
/// the card is unmounted, it is ejected on every way out, if possible.
class ImageWriterService {
  public:
    struct Write {
        SDImageFile image;
        SDWholeDisk target;  ///< is the record of the last revalidation
        bool verify = true;
        /// Is called with the error as soon as an unmounted card could not be written to its end. The card is
        /// only then ejected, and what is thrown in the end may be a cancellation that came meanwhile.
        std::function<void(const std::exception_ptr&)> onFailure = [](const std::exception_ptr&) {};
        /// Is called after onFailure if the card was ejected.
        std::function<void()> onEjected = [] {};
        /// Is called after onFailure if the card could not be ejected because it is no longer there.
        std::function<void()> onDiskGone = [] {};
    };

    ImageWriterService(std::shared_ptr<MainThread> mainThread, const SystemUtilities& utilities,
                       RawDeviceFactory makeDevice) :
        mainThread(std::move(mainThread)),
        diskService(utilities),
        opener(utilities.authorizationUtility, std::move(makeDevice)) {}

    /// Returns once the image was written, flushed and, if requested, verified, and the card was ejected.
    /// Calls `report` on the main thread. Throws TesselError, which is operationCancelled
    /// after a stop or a dismissed prompt, and CancellationError if the task is cancelled before it begins.
    Task<> write(Write request, ImageWriteProgressHandler report) const;

  private:
    Task<SDWholeDisk> prepareTarget(const Write& request, const ImageWriteProgressHandler& report) const;
    Task<> writeUnmountedCard(const Write& request, const SDWholeDisk& card,
                              const ImageWriteProgressHandler& report) const;
    Task<> writeOpenCard(const Write& request, const SDWholeDisk& card, const AuthorizedRawDiskHandle& handle,
                         const ImageWriteProgressHandler& report) const;
    Task<> require(std::vector<std::string> arguments, std::string fallback) const;

    std::shared_ptr<MainThread> mainThread;
    DiskService diskService;
    RawDiskOpener opener;
};

}  // namespace tessel
