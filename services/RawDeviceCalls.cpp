#include "services/RawDeviceCalls.h"

#include <string>

#include "foundation/Errors.h"
#include "model/TesselError.h"
#include "services/FullTransfer.h"

namespace tessel {

namespace {

TesselError failureAt(const std::string& what, uint64_t offset, const std::string& reason) {
    return TesselError::commandFailed(what + " at byte offset " + std::to_string(offset) + ": " + reason);
}

}  // namespace

void writeFully(RawDevice& device, std::span<const std::byte> bytes, uint64_t offset) {
    const auto write = [&device](std::span<const std::byte> rest, uint64_t at) {
        requireUndisturbed(device);
        return device.write(rest, at);
    };
    const auto failure = [](const SystemResult& answer, uint64_t at) {
        return failureAt(
            "The SD-card write did not complete", at,
            answer.isSuccess() ? "The raw device accepted zero bytes." : systemErrorText(answer.error));
    };
    transferFully(bytes, offset, write, failure);
}

void readFully(RawDevice& device, std::span<std::byte> bytes, uint64_t offset) {
    const auto read = [&device](std::span<std::byte> rest, uint64_t at) {
        requireUndisturbed(device);
        return device.read(rest, at);
    };
    const auto failure = [](const SystemResult& answer, uint64_t at) {
        return failureAt(
            "The SD card could not be read for verification", at,
            answer.isSuccess() ? "The raw device reached end of media." : systemErrorText(answer.error));
    };
    transferFully(bytes, offset, read, failure);
}

void synchronizeDevice(RawDevice& device) {
    if (const auto flushed = device.synchronize(); !flushed.isSuccess()) {
        throw TesselError::commandFailed("The completed image could not be synchronized to the SD card: " +
                                         systemErrorText(flushed.error) + ".");
    }
}

void requireUndisturbed(RawDevice& device) {
    switch (device.disturbance()) {
        case Disturbance::none:
            return;
        case Disturbance::exchanged:
            throw TesselError(TesselError::Case::diskChanged);
        case Disturbance::possiblyExchanged:
            throw TesselError::commandFailed(
                "The computer was asleep while the SD card was open, so that another card may have taken its "
                "place. Refresh the disk list and write the image again.");
        case Disturbance::writtenByOthers:
            throw TesselError::commandFailed("Another program is writing to this card.");
    }
}

}  // namespace tessel
