#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "services/BackgroundDigest.h"
#include "services/HelperThread.h"
#include "services/ImageSource.h"

namespace tessel {

/// How an image is cut for a device.
struct ChunkGeometry {
    uint64_t imageSize;  ///< in bytes
    uint64_t blockSize;  ///< of the device, in bytes
    size_t chunkSize;    ///< a whole number of blocks

    /// The image bytes of the chunk that begins at the offset.
    [[nodiscard]] size_t lengthAt(uint64_t offset) const;
    /// The length rounded up to whole blocks.
    [[nodiscard]] size_t padded(size_t length) const;
};

/// One chunk of an image in memory.
struct ImageChunk {
    std::span<const std::byte> bytes;   ///< the image's
    std::span<const std::byte> padded;  ///< the same, followed by zeros up to a whole number of blocks
};

/// Reads an image from its beginning to its end, as often as wanted, and digests it on the way. While its
/// owner works on a chunk it reads the next one; what goes wrong with a chunk is thrown when that chunk is
/// asked for, never before. Dropped in the middle, it waits for no read: one that is stuck is left behind
/// with the file and the memory that it uses.
class ImageReader {
  public:
    /// Opens the image, and acquires all memory and threads that reading takes. Throws TesselError,
    /// PlatformError or std::bad_alloc.
    ImageReader(const std::filesystem::path& url, const ChunkGeometry& geometry);

    /// The next chunk; it stays valid until the next call. To be called once for each chunk.
    [[nodiscard]] ImageChunk next();

    /// Once every chunk was asked for: the SHA-256 digest of the image. The next chunk is the first one
    /// again. Throws imageChanged when the file no longer has its size.
    [[nodiscard]] Sha256::Digest finishPass();

  private:
    struct Reading;
    std::shared_ptr<Reading> reading;
    HelperThread readAhead;
    BackgroundDigest digest;  ///< last, so that it ends before the memory that it reads
};

}  // namespace tessel
