#include "services/ImageReader.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <string>

#include "foundation/Errors.h"
#include "model/TesselError.h"
#include "platform/AlignedBuffer.h"
#include "platform/Files.h"
#include "platform/Transfer.h"
#include "services/HelperThread.h"
#include "services/RawDeviceCalls.h"

namespace tessel {

namespace {

constexpr std::chrono::seconds timeToAnswer{2};

ReadOnlyFile openImageForReading(const std::filesystem::path& url, uint64_t expectedSize) {
    ReadOnlyFile file;
    if (const auto opened = file.open(url); !opened.isSuccess()) {
        throw TesselError::commandFailed(
            "The selected image could not be opened by the application process: " +
            systemErrorText(opened.error) + ".");
    }
    const auto size = file.size();
    if (!size.isSuccess()) {
        throw TesselError::commandFailed(
            "The selected image metadata could not be read: " + systemErrorText(size.error) + ".");
    }
    if (size.value != expectedSize) throw TesselError(TesselError::Case::imageChanged);
    return file;
}

/// The open image file. Throws TesselError for every failure. May be used on any thread, but on only one at a
/// time.
class ImageSource {
  public:
    /// Opens the file. Throws imageChanged if it does not have the expected size in bytes.
    ImageSource(const std::filesystem::path& url, uint64_t expectedSize);

    /// Fills the span with the bytes from the offset on, and lets the system drop that part of the file from
    /// its cache. Throws imageChanged if the file ends too early.
    void read(std::span<std::byte> bytes, uint64_t offset) const;

    /// Throws imageChanged if the file no longer has the expected size.
    void requireUnchangedSize() const;

  private:
    ReadOnlyFile file;
    uint64_t expectedSize;
};

ImageSource::ImageSource(const std::filesystem::path& url, uint64_t expectedSize) :
    file(openImageForReading(url, expectedSize)),
    expectedSize(expectedSize) {}

void ImageSource::read(std::span<std::byte> bytes, uint64_t offset) const {
    try {
        file.read(bytes, offset);
    } catch (const TransferError& error) {
        if (error.code() == 0) throw TesselError(TesselError::Case::imageChanged);
        if (error.code() == EOVERFLOW) throw offsetFailure();
        throw TesselError::commandFailed("The selected image could not be read at byte offset " +
                                         std::to_string(error.offset()) + ": " +
                                         systemErrorText(error.code()) + ".");
    }
    file.adviseFinished(offset, bytes.size());
}

void ImageSource::requireUnchangedSize() const {
    const auto size = file.size();
    if (!size.isSuccess() || size.value != expectedSize) throw TesselError(TesselError::Case::imageChanged);
}

}  // namespace

size_t ChunkGeometry::lengthAt(uint64_t offset) const {
    return static_cast<size_t>(std::min<uint64_t>(chunkSize, imageSize - offset));
}

size_t ChunkGeometry::padded(size_t length) const {
    return static_cast<size_t>((length + blockSize - 1) / blockSize * blockSize);
}

/// What a read uses. The reader and its helper thread use it in turns.
struct ImageReader::Reading {
    ImageSource source;
    ChunkGeometry geometry;
    std::array<AlignedBuffer, 2> buffers;
    uint64_t offset = 0;    ///< the beginning of the next chunk, in bytes
    size_t nextBuffer = 0;  ///< the index of the free buffer; the other one is still being digested
    ImageChunk chunk = {};  ///< the chunk that was read last

    Reading(const std::filesystem::path& url, const ChunkGeometry& geometry) :
        source(url, geometry.imageSize),
        geometry(geometry),
        buffers{AlignedBuffer(geometry.chunkSize, std::align_val_t(geometry.blockSize)),
                AlignedBuffer(geometry.chunkSize, std::align_val_t(geometry.blockSize))} {}

    [[nodiscard]] bool isAtEnd() const { return offset == geometry.imageSize; }

    /// Reads the next chunk or, after the last one, ends the pass.
    void advance() {
        if (!isAtEnd()) return readChunk();
        source.requireUnchangedSize();
        offset = 0;
    }

    void readChunk() {
        const auto length = geometry.lengthAt(offset);
        const auto padded = buffers[nextBuffer].first(geometry.padded(length));
        source.read(padded.first(length), offset);
        std::ranges::fill(padded.subspan(length), std::byte{0});
        chunk = {.bytes = padded.first(length), .padded = padded};
        offset += length;
        nextBuffer = 1 - nextBuffer;
    }
};

ImageReader::ImageReader(const std::filesystem::path& url, const ChunkGeometry& geometry,
                         const std::stop_token& stop) :
    ImageReader(interruptible([url, geometry] { return std::make_shared<Reading>(url, geometry); })(stop)) {}

ImageReader::ImageReader(std::shared_ptr<Reading> begun) :
    reading(*begun),
    readAhead([begun = std::move(begun)] { begun->advance(); }) {}

ImageChunk ImageReader::next(const std::stop_token& stop) {
    readAhead.wait(stop);
    if (reading.offset == 0) readAhead.begin();
    readAhead.finish(stop);
    const auto chunk = reading.chunk;
    // This returns once the previous chunk is digested, so that its buffer is free.
    digest.update(chunk.bytes);
    if (!reading.isAtEnd()) readAhead.begin();
    return chunk;
}

Sha256::Digest ImageReader::finishPass(const std::stop_token& stop) {
    readAhead.begin();
    // A stop comes too late by now, unless the disk of the image does not answer.
    if (!readAhead.isDoneWithin(timeToAnswer)) readAhead.wait(stop);
    readAhead.finish();
    return digest.finish();
}

}  // namespace tessel
