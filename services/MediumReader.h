#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <stop_token>

#include "platform/AlignedBuffer.h"
#include "platform/RawDevice.h"
#include "services/BackgroundDigest.h"
#include "services/ImageReader.h"

namespace tessel {

/// Reads a device back chunk by chunk, proves each chunk equal to the image's and digests what the device
/// held.
class MediumReader {
  public:
    /// Acquires all memory and threads that reading takes. The device must outlive this.
    MediumReader(RawDevice& device, const ChunkGeometry& geometry);

    /// Reads the chunk that begins at the offset until it equals the image's, up to three times: a card may
    /// answer with stale data until it was flushed. Throws TesselError, and CancellationError between two
    /// reads.
    void readMatching(const ImageChunk& chunk, uint64_t offset, const std::stop_token& stop);

    /// The SHA-256 digest of all bytes that were read for the image.
    [[nodiscard]] Sha256::Digest finishDigest() { return digest.finish(); }

  private:
    RawDevice& device;
    std::array<AlignedBuffer, 2> buffers;
    size_t nextBuffer = 0;    ///< the other one is still being digested
    BackgroundDigest digest;  ///< last, so that it ends before the memory that it reads
};

}  // namespace tessel
