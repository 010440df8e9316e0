#include "services/RawDeviceCalls.h"

#include <cerrno>
#include <string>

#include "platform/Transfer.h"

namespace tessel {

namespace {

TesselError failure(const std::string& what, const TransferError& error, const std::string& atEnd) {
    if (error.code() == EOVERFLOW) return offsetFailure();
    return TesselError::commandFailed(what + " at byte offset " + std::to_string(error.offset()) + ": " +
                                      (error.code() == 0 ? atEnd : systemErrorText(error.code())));
}

}  // namespace

void writeToDevice(RawDevice& device, std::span<const std::byte> bytes, uint64_t offset) {
    try {
        device.write(bytes, offset);
    } catch (const TransferError& error) {
        throw failure("The SD-card write did not complete", error, "The raw device accepted zero bytes.");
    }
}

void readForVerification(RawDevice& device, std::span<std::byte> bytes, uint64_t offset) {
    try {
        device.read(bytes, offset);
    } catch (const TransferError& error) {
        throw failure("The SD card could not be read for verification", error,
                      "The raw device reached end of media.");
    }
}

void synchronizeDevice(RawDevice& device) {
    if (const auto flushed = device.synchronize(); !flushed.isSuccess()) {
        throw TesselError::commandFailed("The completed image could not be synchronized to the SD card: " +
                                         systemErrorText(flushed.error) + ".");
    }
}

TesselError disturbanceFailure(const DisturbedMediumError& error) {
    switch (error.disturbance()) {
        case Disturbance::possiblyExchanged:
            return TesselError::commandFailed(
                "The computer was asleep while the SD card was open, so that another card may have taken its "
                "place. Refresh the disk list and write the image again.");
        case Disturbance::writtenByOthers:
            return TesselError::commandFailed("Another program is writing to this card.");
        case Disturbance::exchanged:
        case Disturbance::none:
            break;
    }
    return TesselError(TesselError::Case::diskChanged);
}

TesselError offsetFailure() {
    return TesselError::commandFailed("The requested raw-device offset exceeds the supported range.");
}

}  // namespace tessel
