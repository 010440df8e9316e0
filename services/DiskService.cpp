#include "services/DiskService.h"

#include <algorithm>

#include "foundation/Errors.h"
#include "model/DiskTexts.h"
#include "model/SDCardPolicy.h"
#include "model/TesselError.h"
#include "platform/concurrency/Background.h"

namespace tessel {

namespace {

constexpr std::chrono::seconds listTimeout{30};
constexpr std::chrono::seconds infoTimeout{20};

constexpr int searchAttempts = 3;
constexpr std::chrono::milliseconds searchPause{200};

}  // namespace

TesselError notFound(const DiskSearch& search) {
    if (!search.isListed && !search.readError) return TesselError::diskGone();
    return TesselError(TesselError::Case::diskChanged);
}

Task<CommandResult> DiskService::runDiskutil(std::vector<std::string> arguments,
                                             std::chrono::seconds timeout) const {
    Command command{
        .executable = diskUtility, .arguments = std::move(arguments), .environment = {{"LC_ALL", "C"}}};
    co_return co_await CommandRunner().run(std::move(command), timeout);
}

Task<DiskList> DiskService::listWholeDisks() const {
    const auto result = co_await runDiskutil({"list", "-plist"}, listTimeout);
    if (result.status != 0) throw TesselError::commandFailed(result.failureMessage("diskutil list failed."));
    co_return parseDiskList(result.standardOutput);
}

Task<std::optional<SDWholeDisk>> DiskService::readDiskInfo(std::string identifier,
                                                           const DiskLayout* layout) const {
    std::vector<std::string> arguments{"info", "-plist", devicePath(identifier)};
    const auto result = co_await runDiskutil(std::move(arguments), infoTimeout);
    if (result.status != 0) co_return std::nullopt;
    co_return parseDiskInfo(result.standardOutput, identifier, layout);
}

Task<DiskSearch> DiskService::findAgain(SDWholeDisk expected) const {
    co_await checkCancellation();
    DiskSearch search;
    while (!search.found && search.attempts < searchAttempts) {
        if (search.attempts > 0) co_await sleepFor(searchPause);
        ++search.attempts;
        co_await lookFor(expected, search);
    }
    co_return search;
}

/// Makes one attempt to find the disk, and records what it saw.
Task<> DiskService::lookFor(const SDWholeDisk& expected, DiskSearch& search) const {
    try {
        const auto list = co_await listWholeDisks();
        search.isListed = std::ranges::find(list.identifiers, expected.id) != list.identifiers.end();
        if (!search.isListed) co_return;
        auto disk = co_await readDiskInfo(expected.id, list.layoutOf(expected.id));
        if (!disk) co_return;
        (isSameDisk(*disk, expected) ? search.found : search.otherDisk) = std::move(disk);
    } catch (const TesselError&) {
        throw;
    } catch (const CancellationError&) {
        throw;
    } catch (const std::exception&) {
        search.readError = std::current_exception();
    }
}

Task<bool> DiskService::isGone(std::string identifier) const {
    auto list = co_await outcomeOf(listWholeDisks());
    if (list.error()) co_return false;
    const auto disks = std::move(list).value().identifiers;
    co_return std::ranges::find(disks, identifier) == disks.end();
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
    const TesselError cancelled(TesselError::Case::operationCancelled);
    auto outcome = co_await outcomeOf(findAgain(std::move(selected)));
    if (errorOfType<CancellationError>(outcome.error())) throw cancelled;
    auto search = std::move(outcome).value();
    if (!search.found) throw notFound(search);
    if (co_await isCancelled()) throw cancelled;
    if (const auto reason = protectionText(*search.found)) throw TesselError::unsafeDisk(*reason);
    co_return std::move(*search.found);
}

SDWholeDisk DiskService::placeholderDisk(const std::string& identifier, const DiskLayout* layout) {
    const auto known = layout ? *layout : DiskLayout();
    return {.id = identifier,
            .mediaName = "Disk " + identifier,
            .sizeBytes = known.sizeBytes.value_or(0),
            .busProtocol = "Unknown bus",
            .deviceLocation = locationByFlag(known.isInternal),
            .partitionScheme = known.partitionScheme,
            .partitions = known.partitions,
            .isInternal = known.isInternal,
            .isWhole = true};
}

}  // namespace tessel
