#include "services/MediumReader.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <optional>
#include <string>

#include "model/TesselError.h"
#include "platform/concurrency/Background.h"
#include "services/RawDeviceCalls.h"

namespace tessel {

namespace {

constexpr int readsPerChunk = 3;
constexpr std::chrono::milliseconds pauseBeforeReread{200};

/// Fills the memory with bytes that all differ from the expected ones, so that a read that delivers nothing
/// is never mistaken for the image.
void fillWithOther(std::span<std::byte> memory, std::span<const std::byte> expected) {
    std::ranges::transform(expected, memory.begin(), [](std::byte byte) { return ~byte; });
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
    return TesselError::commandFailed("Verification failed at byte offset " + std::to_string(offset) + ": " +
                                      values);
}

}  // namespace

MediumReader::MediumReader(RawDevice& device, const ChunkGeometry& geometry) :
    device(device),
    buffers{AlignedBuffer(geometry.chunkSize, std::align_val_t(geometry.blockSize)),
            AlignedBuffer(geometry.chunkSize, std::align_val_t(geometry.blockSize))} {}

void MediumReader::readMatching(const ImageChunk& chunk, uint64_t offset, const std::stop_token& stop) {
    const auto medium = buffers[nextBuffer].first(chunk.padded.size());
    for (int reads = 1;; ++reads) {
        fillWithOther(medium, chunk.padded);
        readForVerification(device, medium, offset);
        const auto difference = firstDifference(chunk.bytes, medium.first(chunk.bytes.size()));
        if (!difference) break;
        if (reads == readsPerChunk) {
            throw verificationFailure(offset + *difference, chunk.bytes[*difference], medium[*difference]);
        }
        synchronizeDevice(device);
        sleepFor(pauseBeforeReread, stop);
    }
    digest.update(medium.first(chunk.bytes.size()));
    nextBuffer = 1 - nextBuffer;
}

}  // namespace tessel
