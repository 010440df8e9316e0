#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <future>
#include <span>

#include "platform/AlignedBuffer.h"
#include "platform/Files.h"
#include "services/BackgroundDigest.h"

namespace tessel {

/// How an image is cut for a device.
struct ChunkGeometry {
    uint64_t imageSize;  ///< in bytes
    uint64_t blockSize;  ///< of the device, in bytes
    size_t chunkSize;    ///< a whole number of blocks

    /// The image bytes of the chunk that begins at the offset.
    size_t lengthAt(uint64_t offset) const;
    /// The length rounded up to whole blocks.
    size_t padded(size_t length) const;
};

/// One chunk of an image in memory.
struct ImageChunk {
    std::span<const std::byte> bytes;   ///< the image's
    std::span<const std::byte> padded;  ///< the same, followed by zeros up to a whole number of blocks
};

/// The open image file. Throws TesselError for what goes wrong with it.
class ImageSource {
  public:
    /// Opens the file, which must have the expected size in bytes: imageChanged otherwise.
    ImageSource(const std::filesystem::path& url, uint64_t expectedSize);

    /// Fills the span from that offset. Throws imageChanged when the file ends before.
    void read(std::span<std::byte> bytes, uint64_t offset) const;

    /// Throws imageChanged when the file no longer has the expected size.
    void requireUnchangedSize() const;

    void adviseFinished(uint64_t offset, uint64_t length) const { file.adviseFinished(offset, length); }

  private:
    ReadOnlyFile file;
    uint64_t expectedSize;
};

/// Reads an image once from its beginning to its end and digests it on the way, one chunk ahead of its
/// caller. What goes wrong with a chunk is thrown when that chunk is asked for, never before.
class ImageReader {
  public:
    ImageReader(const ImageSource& source, const ChunkGeometry& geometry);

    /// The next chunk; it stays valid until the next call. To be called once for each chunk.
    ImageChunk next();

    /// The SHA-256 digest of the image, once every chunk was asked for.
    Sha256::Digest finishDigest() { return digest.finish(); }

  private:
    void startReading();
    ImageChunk read(uint64_t offset, const AlignedBuffer& buffer) const;

    const ImageSource& source;
    ChunkGeometry geometry;
    std::array<AlignedBuffer, 2> buffers;
    BackgroundDigest digest;
    uint64_t nextOffset = 0;
    size_t nextBuffer = 0;
    std::future<ImageChunk> readAhead;  ///< last, so that it ends before what it uses
};

}  // namespace tessel
