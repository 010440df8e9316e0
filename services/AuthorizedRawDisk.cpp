#include "services/AuthorizedRawDisk.h"

#include <array>
#include <bit>
#include <optional>
#include <string_view>

#include "foundation/Errors.h"
#include "foundation/Text.h"
#include "model/SystemWords.h"
#include "platform/CollectingPipe.h"
#include "platform/DescriptorChannel.h"
#include "platform/Files.h"
#include "platform/Process.h"

namespace tessel {

namespace {

constexpr uint64_t smallestBlockSize = 512;
constexpr uint64_t largestBlockSize = 1'048'576;

/// Returns the device's answer. Throws commandFailed if the call failed or the answer is 0.
uint64_t required(const SystemResult& answer, const std::string& failure) {
    if (answer.isSuccess() && answer.value != 0) return answer.value;
    throw TesselError::commandFailed(failure + systemErrorText(answer.error) + ".");
}

void requireSupportedBlockSize(uint64_t blockSize) {
    if (blockSize >= smallestBlockSize && blockSize <= largestBlockSize && std::has_single_bit(blockSize))
        return;
    throw TesselError::commandFailed("The authorized SD card reported an unsupported logical block size of " +
                                     std::to_string(blockSize) + " bytes.");
}

DescriptorChannel createChannel() {
    try {
        return DescriptorChannel::create();
    } catch (const PlatformError& error) {
        throw TesselError::commandFailed(
            "The descriptor-transfer socket could not be created: " + systemErrorText(error.code()) + ".");
    }
}

/// Returns what the step returns, and reports its failure as a failure of the launch.
template <typename Step>
auto launching(Step step) {
    try {
        return step();
    } catch (const PlatformError& error) {
        throw TesselError::commandFailed(systemWords().authorizationUtilityNotLaunched +
                                         error.localizedDescription());
    }
}

TesselError receptionFailure(const std::optional<ReceivedDescriptor>& message) {
    using enum ReceivedDescriptor::Outcome;
    const auto sentence = [&message]() -> std::string {
        switch (message ? message->outcome : received) {
            case failed:
                return "The authorized raw-device descriptor could not be received: " +
                       systemErrorText(message->errorCode) + ".";
            case closed:
                return "The authorization utility closed its descriptor channel before returning the raw "
                       "device.";
            case truncated:
                return "The authorized raw-device descriptor message was truncated.";
            case missing:
                return "The authorization utility response did not contain a raw-device descriptor.";
            case invalid:
                return "The authorization utility returned an invalid raw-device descriptor.";
            case received:
                break;
        }
        return "The authorization utility ended without returning a raw-device descriptor.";
    };
    return TesselError::commandFailed(sentence());
}

}  // namespace

AuthorizedRawDiskHandle RawDiskOpener::openAuthorizedRawDisk(const std::string& devicePath) const {
    if (!isExecutableFile(authorizationUtility)) {
        throw TesselError::commandFailed(systemWords().authorizationUtilityUnavailable);
    }
    AuthorizedRawDiskHandle handle{.device = makeDevice(launchAuthorizationUtility(devicePath))};
    handle.blockSize = required(handle.device->blockSize(),
                                "The logical block size of the authorized SD card could not be determined: ");
    handle.blockCount = required(handle.device->blockCount(),
                                 "The block count of the authorized SD card could not be determined: ");
    requireSupportedBlockSize(handle.blockSize);

    // A verification that the cache answers proves nothing, so a device without uncached access is refused.
    if (const auto uncached = handle.device->disableCaching(); !uncached.isSuccess()) {
        throw TesselError::commandFailed("The authorized SD card could not be opened for uncached access: " +
                                         systemErrorText(uncached.error) + ".");
    }
    return handle;
}

FileDescriptor RawDiskOpener::launchAuthorizationUtility(const std::string& devicePath) const {
    auto channel = createChannel();
    auto error = launching([] { return CollectingPipe(); });
    auto process = launching([&] {
        return Process({.executable = authorizationUtility,
                        .arguments = {"-stdoutpipe", "-o", "2", devicePath},
                        .environment = {{"LC_ALL", "C"}}},
                       {.standardOutput = channel.sendingEnd.get(), .standardError = error.writingEnd()});
    });
    channel.sendingEnd.close();

    // Standard error is read at the same time: a talkative utility would otherwise fill the pipe and never
    // send its message.
    std::optional<ReceivedDescriptor> message;
    std::array streams{Process::Stream{channel.receivingEnd.get(),
                                       [&] {
                                           message = receiveDescriptor(channel.receivingEnd.get());
                                           return Process::Stream::State::finished;
                                       }},
                       error.stream()};
    const auto ending = process.waitUntilExit({.streams = streams, .timeout = std::nullopt});

    const bool hasDescriptor = message && message->outcome == ReceivedDescriptor::Outcome::received;
    if (ending.termination.isSuccess() && hasDescriptor) return std::move(message->descriptor);

    const auto errorText = trimmedOutput(error.collected());
    if (errorText.empty()) throw receptionFailure(message);
    throw authorizationFailure(errorText);
}

TesselError authorizationFailure(const std::string& errorText) {
    struct Refusal {
        std::string_view words;
        std::string_view message;  ///< empty for a cancellation
    };
    const std::string_view denied = systemWords().rawAccessDenied;
    static constexpr std::string_view busy =
        "The SD card is still in use by another process. Close applications using the card, refresh the disk "
        "list, and try again.";
    const Refusal refusals[] = {
        {"user canceled", {}},           {"user cancelled", {}},       {"authorization canceled", {}},
        {"authorization cancelled", {}}, {"authorization denied", {}}, {"operation not permitted", denied},
        {"permission denied", denied},   {"resource busy", busy},      {"device busy", busy},
    };

    const auto text = lowercased(errorText);
    for (const auto& [words, message] : refusals) {
        if (text.find(words) == std::string::npos) continue;
        if (message.empty()) return TesselError(TesselError::Case::operationCancelled);
        return TesselError::commandFailed(std::string(message));
    }
    return TesselError::commandFailed("The authorized raw-device open failed: " + errorText);
}

}  // namespace tessel
