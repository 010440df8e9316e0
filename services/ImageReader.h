#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <stop_token>

#include "services/BackgroundDigest.h"
#include "services/HelperThread.h"

namespace tessel {

/// How an image is cut into chunks for a device.
struct ChunkGeometry {
    uint64_t imageSize;  ///< in bytes
    uint64_t blockSize;  ///< of the device, in bytes
    size_t chunkSize;    ///< in bytes, a whole number of blocks

    /// Returns the number of image bytes in the chunk that begins at the offset.
    [[nodiscard]] size_t lengthAt(uint64_t offset) const;
    /// Returns the length rounded up to whole blocks.
    [[nodiscard]] size_t padded(size_t length) const;
};

/// One chunk of an image in memory.
struct ImageChunk {
    std::span<const std::byte> bytes;   ///< the bytes of the image
    std::span<const std::byte> padded;  ///< the same bytes, followed by zeros up to a whole number of blocks
};

/// Reads an image from beginning to end, as often as wanted, and digests it on the way. While its owner works
/// on one chunk, it reads the next; an error in reading a chunk is thrown when that chunk is asked for, never
/// earlier. If it is destroyed halfway, it waits for no read: one that is stuck is left behind with the file
/// and the memory that it uses.
class ImageReader {
  public:
    /// Opens the image, and acquires all the memory and threads that reading needs. Throws TesselError,
    /// PlatformError or std::bad_alloc, and CancellationError as soon as a stop is requested.
    ImageReader(const std::filesystem::path& url, const ChunkGeometry& geometry, const std::stop_token& stop);

    /// Returns the next chunk, which stays valid until the next call. Throws CancellationError as soon as a
    /// stop is requested, since the image's own disk may never answer. Requires: the pass has chunks left.
    [[nodiscard]] ImageChunk next(const std::stop_token& stop);

    /// Returns the SHA-256 digest of the image. The next chunk is then the first one again. Throws
    /// imageChanged if the file no longer has its size, and CancellationError if a stop is requested and the
    /// disk of the image does not answer. Requires: every chunk was asked for.
    [[nodiscard]] Sha256::Digest finishPass(const std::stop_token& stop);

  private:
    struct Reading;

    explicit ImageReader(std::shared_ptr<Reading> begun);

    Reading& reading;  ///< owned by the work of the helper thread, which closes the file at its end
    HelperThread readAhead;
    BackgroundDigest digest;  ///< the last member, so that it ends before the memory that it reads
};

}  // namespace tessel
