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

/// Reads a device back chunk by chunk, proves that each chunk equals the image's, and digests what it read.
class MediumReader {
  public:
    /// Acquires all the memory and threads that reading needs. The device must outlive this object.
    MediumReader(RawDevice& device, const ChunkGeometry& geometry);

    /// Reads the chunk that begins at the offset until it equals the image's, up to three times, because a
    /// card may answer with stale data until it is flushed. Throws TesselError, DisturbedMediumError, and
    /// CancellationError between two reads.
    void readMatching(const ImageChunk& chunk, uint64_t offset, const std::stop_token& stop);

    /// Returns the SHA-256 digest of all the image's bytes as the device returned them.
    [[nodiscard]] Sha256::Digest finishDigest() { return digest.finish(); }

  private:
    RawDevice& device;
    std::array<AlignedBuffer, 2> buffers;
    size_t nextBuffer = 0;    ///< the index of the free buffer; the other one is still being digested
    BackgroundDigest digest;  ///< the last member, so that it ends before the memory that it reads
};

}  // namespace tessel
