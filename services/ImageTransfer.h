#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <stop_token>

#include "foundation/Sha256.h"
#include "model/ImageWriteProgress.h"
#include "services/AuthorizedRawDisk.h"

namespace tessel {

/// Receives one report of a write. The writer waits until it returns, so reports never overlap.
using ImageWriteProgressHandler = std::function<void(const ImageWriteProgress&)>;

/// What is to be written and where.
struct ImageTransfer {
    std::filesystem::path imageURL;
    uint64_t imageSize;                     ///< in bytes, as it was when the image was selected
    const AuthorizedRawDiskHandle& handle;  ///< the open device, which must outlive the transfer
    bool verify;                            ///< whether everything is read back and compared
};

/// Copies the image onto the device, byte for byte from offset 0, flushes it and, if asked to, reads
/// everything back and compares it chunk by chunk and by SHA-256. Returns the digest of what was written.
/// Blocks, and reports on the calling thread. Acquires all the buffers and threads that it needs before it
/// writes the first byte. Throws TesselError, PlatformError or std::bad_alloc, and CancellationError at a
/// checkpoint: before each chunk, until the image's disk has delivered it, and while it waits to read a
/// differing chunk again. What was written before an error stays written. Requires: it is called on a
/// background thread.
Sha256::Digest writeImage(const ImageTransfer& transfer, const std::stop_token& stop,
                          const ImageWriteProgressHandler& report);

}  // namespace tessel
