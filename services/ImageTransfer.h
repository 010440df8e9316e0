#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <stop_token>

#include "model/ImageWriteProgress.h"
#include "services/AuthorizedRawDisk.h"

namespace tessel {

/// Takes one report of a write. The writer goes on when it returns, so reports never overlap.
using ImageWriteProgressHandler = std::function<void(const ImageWriteProgress&)>;

/// What is to be written where.
struct ImageTransfer {
    std::filesystem::path imageURL;
    uint64_t imageSize;                     ///< in bytes, as it was when the image was selected
    const AuthorizedRawDiskHandle& handle;  ///< stays open; must outlive the transfer
    bool verify;                            ///< read everything back and compare it
};

/// Copies the image onto the device, byte for byte from offset 0, flushes it and, when asked, reads
/// everything back and compares it chunk by chunk and by SHA-256. Blocks, so it is to be called on a
/// background thread, where it reports too. Acquires all buffers and threads that it needs before it writes
/// the first byte. Throws TesselError, PlatformError or std::bad_alloc, and CancellationError at a
/// checkpoint: before each chunk, and while it waits to read a differing chunk again. What was written before
/// an error stays written.
void writeImage(const ImageTransfer& transfer, const std::stop_token& stop,
                const ImageWriteProgressHandler& report);

}  // namespace tessel
