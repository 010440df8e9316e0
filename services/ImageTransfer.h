#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>

#include "model/ImageWriteProgress.h"
#include "platform/concurrency/Task.h"
#include "services/AuthorizedRawDisk.h"

namespace tessel {

/// Takes one report of a write. The writer goes on when the task has ended, so reports never overlap.
using ImageWriteProgressHandler = std::function<Task<>(ImageWriteProgress)>;

/// What is to be written where.
struct ImageTransfer {
    std::filesystem::path imageURL;
    uint64_t imageSize;                     ///< in bytes, as it was when the image was selected
    const AuthorizedRawDiskHandle& handle;  ///< stays open; must outlive the transfer
    bool verify;                            ///< read everything back and compare it
};

/// Copies the image onto the device, byte for byte from offset 0, flushes it and, when asked, reads
/// everything back and compares it chunk by chunk and by SHA-256. Blocks its thread: start it on a background
/// home. Throws TesselError, or CancellationError at a checkpoint: before each chunk, and while waiting to
/// read a differing chunk again. What was written before an error stays written.
Task<> writeImage(ImageTransfer transfer, ImageWriteProgressHandler progress);

/// Makes the medium itself keep what was written. Throws TesselError.
void synchronizeDevice(RawDevice& device);

}  // namespace tessel
