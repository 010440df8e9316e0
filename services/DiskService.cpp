#include "services/DiskService.h"

#include <algorithm>

#include "foundation/Errors.h"
#include "model/SDCardPolicy.h"
#include "model/TesselError.h"
#include "platform/concurrency/Background.h"

namespace tessel {

namespace {

constexpr std::chrono::seconds listTimeout{30};
constexpr std::chrono::seconds infoTimeout{20};

std::string locationOf(std::optional<bool> isInternal) {
    if (!isInternal) return "Unknown";
    return *isInternal ? "Internal" : "External";
}

}  // namespace

Task<CommandResult> DiskService::runDiskutil(std::vector<std::string> arguments,
                                             std::chrono::seconds timeout) const {
    co_return co_await CommandRunner().run({.executable = utilities.diskUtility,
                                            .arguments = std::move(arguments),
                                            .environment = {{"LC_ALL", "C"}}},
                                           timeout);
}

Task<DiskList> DiskService::listWholeDisks() const {
    const auto result = co_await runDiskutil({"list", "-plist"}, listTimeout);
    if (result.status != 0) throw TesselError::commandFailed(result.failureMessage("diskutil list failed."));
    co_return parseDiskList(result.standardOutput);
}

Task<std::optional<SDWholeDisk>> DiskService::readDiskInfo(std::string identifier,
                                                           const DiskLayout* layout) const {
    const auto result = co_await runDiskutil({"info", "-plist", "/dev/" + identifier}, infoTimeout);
    if (result.status != 0) co_return std::nullopt;
    co_return parseDiskInfo(result.standardOutput, identifier, layout);
}

Task<DiskObservation> DiskService::observeDisk(std::string identifier) const {
    try {
        const auto list = co_await listWholeDisks();
        if (std::ranges::find(list.identifiers, identifier) == list.identifiers.end())
            co_return DiskObservation();
        co_return DiskObservation{.disk = co_await readDiskInfo(identifier, list.layoutOf(identifier))};
    } catch (const TesselError&) {
        throw;
    } catch (const std::exception&) {
        co_return DiskObservation{.readError = std::current_exception()};
    }
}

Task<std::vector<SDWholeDisk>> DiskService::scanDisks() const {
    const auto list = co_await listWholeDisks();
    std::vector<SDWholeDisk> disks;
    for (const auto& identifier : list.identifiers) {
        const auto layout = list.layoutOf(identifier);
        auto answer = co_await outcomeOf(readDiskInfo(identifier, layout));
        auto details = answer.error() ? std::nullopt : std::move(answer).value();
        disks.push_back(details ? std::move(*details) : placeholderDisk(identifier, layout));
    }
    sortForDisplay(disks);
    co_return disks;
}

Task<SDWholeDisk> DiskService::revalidateDisk(SDWholeDisk selected) const {
    try {
        for (int attempt = 1; attempt <= revalidationAttempts; ++attempt) {
            if (attempt > 1) co_await sleepFor(revalidationPause);
            if (auto fresh = co_await attemptRevalidation(selected)) co_return std::move(*fresh);
        }
    } catch (const CancellationError&) {
        throw TesselError(TesselError::Case::operationCancelled);
    }
    throw TesselError(TesselError::Case::diskChanged);
}

/// The fresh record, or nothing when the attempt failed and another may succeed.
Task<std::optional<SDWholeDisk>> DiskService::attemptRevalidation(SDWholeDisk selected) const {
    co_await checkCancellation();
    auto observed = co_await observeDisk(selected.id);
    if (!observed.disk || !isSameDisk(*observed.disk, selected)) co_return std::nullopt;
    co_await checkCancellation();
    if (const auto reason = eligibilityFailureReason(*observed.disk)) throw TesselError::unsafeDisk(*reason);
    co_return std::move(observed.disk);
}

SDWholeDisk DiskService::placeholderDisk(const std::string& identifier, const DiskLayout* layout) {
    const auto known = layout ? *layout : DiskLayout();
    return {.id = identifier,
            .mediaName = "Disk " + identifier,
            .sizeBytes = known.sizeBytes.value_or(0),
            .busProtocol = "Unknown bus",
            .deviceLocation = locationOf(known.isInternal),
            .partitionScheme = known.partitionScheme,
            .partitions = known.partitions,
            .isInternal = known.isInternal,
            .isWhole = true};
}

}  // namespace tessel
