#include "services/ImageReader.h"

#include <algorithm>
#include <limits>

#include "foundation/Errors.h"
#include "model/TesselError.h"

namespace tessel {

size_t ChunkGeometry::lengthAt(uint64_t offset) const {
    return static_cast<size_t>(std::min<uint64_t>(chunkSize, imageSize - offset));
}

size_t ChunkGeometry::padded(size_t length) const {
    return static_cast<size_t>((length + blockSize - 1) / blockSize * blockSize);
}

ImageSource::ImageSource(const std::filesystem::path& url, uint64_t expectedSize) :
    expectedSize(expectedSize) {
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
}

void ImageSource::read(std::span<std::byte> bytes, uint64_t offset) const {
    while (!bytes.empty()) {
        if (offset > static_cast<uint64_t>(std::numeric_limits<int64_t>::max())) {
            throw TesselError::commandFailed("The requested raw-device offset exceeds the supported range.");
        }
        const auto result = file.read(bytes, offset);
        if (result.isInterrupted()) continue;
        if (!result.isSuccess()) {
            throw TesselError::commandFailed("The selected image could not be read at byte offset " +
                                             std::to_string(offset) + ": " + systemErrorText(result.error) +
                                             ".");
        }
        if (result.value == 0) throw TesselError(TesselError::Case::imageChanged);
        bytes = bytes.subspan(result.value);
        offset += result.value;
    }
}

void ImageSource::requireUnchangedSize() const {
    const auto size = file.size();
    if (!size.isSuccess() || size.value != expectedSize) throw TesselError(TesselError::Case::imageChanged);
}

ImageReader::ImageReader(const ImageSource& source, const ChunkGeometry& geometry) :
    source(source),
    geometry(geometry),
    buffers{AlignedBuffer(geometry.chunkSize, geometry.blockSize),
            AlignedBuffer(geometry.chunkSize, geometry.blockSize)} {
    startReading();
}

ImageChunk ImageReader::next() {
    const auto chunk = readAhead.get();
    digest.update(chunk.bytes);
    // The buffer to be filled next is free: the chunk that was in it has been digested.
    if (nextOffset < geometry.imageSize) startReading();
    return chunk;
}

void ImageReader::startReading() {
    const auto offset = nextOffset;
    const auto& buffer = buffers[nextBuffer];
    nextOffset += geometry.lengthAt(offset);
    nextBuffer = 1 - nextBuffer;
    readAhead = std::async(std::launch::async, [this, offset, &buffer] { return read(offset, buffer); });
}

ImageChunk ImageReader::read(uint64_t offset, const AlignedBuffer& buffer) const {
    const auto length = geometry.lengthAt(offset);
    const auto padded = buffer.first(geometry.padded(length));
    source.read(padded.first(length), offset);
    std::ranges::fill(padded.subspan(length), std::byte{0});
    return {.bytes = padded.first(length), .padded = padded};
}

}  // namespace tessel
