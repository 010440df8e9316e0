#include "services/ImageTransfer.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <limits>
#include <optional>
#include <span>
#include <string>

#include "foundation/Errors.h"
#include "foundation/Sha256.h"
#include "model/TesselError.h"
#include "platform/AlignedBuffer.h"
#include "platform/concurrency/Background.h"
#include "services/ImageReader.h"

namespace tessel {

namespace {

using enum ImageWritePhase;

constexpr size_t largestChunk = 8 * 1024 * 1024;
constexpr int readsPerChunk = 3;
constexpr std::chrono::milliseconds pauseBeforeReread{200};

/// A whole number of blocks, and at least one.
size_t chunkSizeFor(uint64_t blockSize) {
    return static_cast<size_t>(std::max<uint64_t>(largestChunk / blockSize, 1) * blockSize);
}

TesselError failureAt(const std::string& what, uint64_t offset, const std::string& reason) {
    return TesselError::commandFailed(what + " at byte offset " + std::to_string(offset) + ": " + reason);
}

/// Repeats a call that may be short or interrupted until all bytes went through. `transfer` takes what is
/// left and the device offset of it.
template <typename Span, typename Call>
void transferFully(Span bytes, uint64_t offset, const std::string& failure, const std::string& nothingMoved,
                   Call transfer) {
    while (!bytes.empty()) {
        if (offset > static_cast<uint64_t>(std::numeric_limits<int64_t>::max())) {
            throw TesselError::commandFailed("The requested raw-device offset exceeds the supported range.");
        }
        const SystemResult moved = transfer(bytes, offset);
        if (moved.isInterrupted()) continue;
        if (!moved.isSuccess()) throw failureAt(failure, offset, systemErrorText(moved.error));
        if (moved.value == 0) throw failureAt(failure, offset, nothingMoved);
        bytes = bytes.subspan(static_cast<size_t>(moved.value));
        offset += moved.value;
    }
}

void writeFully(RawDevice& device, std::span<const std::byte> bytes, uint64_t offset) {
    transferFully(bytes, offset, "The SD-card write did not complete", "The raw device accepted zero bytes.",
                  [&device](auto rest, uint64_t at) { return device.write(rest, at); });
}

void readFully(RawDevice& device, std::span<std::byte> bytes, uint64_t offset) {
    transferFully(bytes, offset, "The SD card could not be read for verification",
                  "The raw device reached end of media.",
                  [&device](auto rest, uint64_t at) { return device.read(rest, at); });
}

std::optional<size_t> firstDifference(std::span<const std::byte> expected,
                                      std::span<const std::byte> actual) {
    if (std::memcmp(expected.data(), actual.data(), expected.size()) == 0) return std::nullopt;
    const auto difference = std::ranges::mismatch(expected, actual);
    return static_cast<size_t>(difference.in1 - expected.begin());
}

TesselError verificationFailure(uint64_t offset, std::byte expected, std::byte actual) {
    char values[40];
    std::snprintf(values, sizeof values, "expected 0x%02X, read 0x%02X.", std::to_integer<unsigned>(expected),
                  std::to_integer<unsigned>(actual));
    return failureAt("Verification failed", offset, values);
}

/// Nothing is written to, or believed of, a card that took the place of another.
void requireSameMedium(RawDevice& device) {
    if (!device.confirmSameMedium().isSuccess()) throw TesselError(TesselError::Case::diskChanged);
}

/// Reads the chunk back until it equals the image's. A card may answer with stale data until it was flushed.
Task<> readMatching(RawDevice& device, ImageChunk chunk, std::span<std::byte> medium, uint64_t offset) {
    for (int reads = 1;; ++reads) {
        // A read that delivers nothing must not find the image where it was left.
        std::ranges::fill(medium, std::byte{0});
        readFully(device, medium, offset);
        const auto difference = firstDifference(chunk.bytes, medium.first(chunk.bytes.size()));
        if (!difference) co_return;
        if (reads == readsPerChunk) {
            throw verificationFailure(offset + *difference, chunk.bytes[*difference], medium[*difference]);
        }
        synchronizeDevice(device);
        co_await sleepFor(pauseBeforeReread);
    }
}

/// Writes every chunk and gives the digest of what was written.
Task<Sha256::Digest> writeChunks(const ImageTransfer& transfer, const ImageSource& source,
                                 const ChunkGeometry& geometry, const ImageWriteProgressHandler& progress) {
    ImageReader image(source, geometry);
    co_await progress({writingImage, 0, geometry.imageSize});
    for (uint64_t written = 0; written < geometry.imageSize;) {
        co_await checkCancellation();
        const auto chunk = image.next();
        requireSameMedium(*transfer.handle.device);
        writeFully(*transfer.handle.device, chunk.padded, written);
        written += chunk.bytes.size();
        co_await progress({writingImage, written, geometry.imageSize});
    }
    source.requireUnchangedSize();
    co_return image.finishDigest();
}

/// Reads every chunk back and proves that the medium holds what was written.
Task<> verifyChunks(const ImageTransfer& transfer, const ImageSource& source, const ChunkGeometry& geometry,
                    const Sha256::Digest& writtenDigest, const ImageWriteProgressHandler& progress) {
    transfer.handle.device->disableCaching();
    ImageReader image(source, geometry);
    const std::array buffers{AlignedBuffer(geometry.chunkSize, geometry.blockSize),
                             AlignedBuffer(geometry.chunkSize, geometry.blockSize)};
    BackgroundDigest mediumDigest;
    co_await progress({verifyingImage, 0, geometry.imageSize});
    size_t current = 0;
    for (uint64_t verified = 0; verified < geometry.imageSize; current = 1 - current) {
        co_await checkCancellation();
        const auto chunk = image.next();
        requireSameMedium(*transfer.handle.device);
        // The other buffer is still being digested.
        const auto medium = buffers[current].first(chunk.padded.size());
        co_await readMatching(*transfer.handle.device, chunk, medium, verified);
        mediumDigest.update(medium.first(chunk.bytes.size()));
        source.adviseFinished(verified, chunk.bytes.size());
        verified += chunk.bytes.size();
        co_await progress({verifyingImage, verified, geometry.imageSize});
    }
    source.requireUnchangedSize();
    if (image.finishDigest() != writtenDigest) throw TesselError(TesselError::Case::imageChanged);
    if (mediumDigest.finish() != writtenDigest) {
        throw TesselError::commandFailed(
            "The written bytes matched during verification, but the final SHA-256 digest comparison did not "
            "match.");
    }
}

}  // namespace

Task<> writeImage(ImageTransfer transfer, ImageWriteProgressHandler progress) {
    if (transfer.imageSize == 0) throw TesselError(TesselError::Case::imageUnavailable);
    if (!transfer.handle.holds(transfer.imageSize)) throw TesselError(TesselError::Case::imageTooLarge);

    const ImageSource source(transfer.imageURL, transfer.imageSize);
    const auto blockSize = transfer.handle.blockSize;
    const ChunkGeometry geometry{
        .imageSize = transfer.imageSize, .blockSize = blockSize, .chunkSize = chunkSizeFor(blockSize)};

    const auto digest = co_await writeChunks(transfer, source, geometry, progress);
    co_await progress({synchronizing, transfer.imageSize, transfer.imageSize});
    synchronizeDevice(*transfer.handle.device);
    requireSameMedium(*transfer.handle.device);
    if (transfer.verify) {
        co_await verifyChunks(transfer, source, geometry, digest, progress);
        requireSameMedium(*transfer.handle.device);
    }
}

void synchronizeDevice(RawDevice& device) {
    if (const auto flushed = device.synchronize(); !flushed.isSuccess()) {
        throw TesselError::commandFailed("The completed image could not be synchronized to the SD card: " +
                                         systemErrorText(flushed.error) + ".");
    }
}

}  // namespace tessel
