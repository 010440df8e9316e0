#pragma once

#include <chrono>
#include <exception>
#include <optional>
#include <string>
#include <vector>

#include "model/DiskLayout.h"
#include "model/SDWholeDisk.h"
#include "platform/concurrency/Task.h"
#include "services/CommandRunner.h"
#include "services/DiskPropertyLists.h"
#include "services/SystemUtilities.h"

namespace tessel {

/// What one attempt to read a disk again saw: its record, or nothing, and the error that stood in the way.
struct DiskObservation {
    std::optional<SDWholeDisk> disk;
    std::exception_ptr readError;
};

/// Asks the operating system about disks, through its disk utility. Stateless: every operation starts from
/// fresh output, and runs its commands strictly one after another.
class DiskService {
  public:
    static constexpr int revalidationAttempts = 3;
    static constexpr std::chrono::milliseconds revalidationPause{200};

    explicit DiskService(SystemUtilities utilities) : utilities(std::move(utilities)) {}

    /// Runs the disk utility. A non-zero status is a result, not an error.
    Task<CommandResult> runDiskutil(std::vector<std::string> arguments, std::chrono::seconds timeout) const;

    /// The identifiers of all whole disks with what the list says of each. Throws TesselError when the
    /// command fails or answers with something else than a disk list, PlatformError when it answers with
    /// rubbish.
    Task<DiskList> listWholeDisks() const;

    /// The details of one disk, beside what the list said of it (may be null); nothing when it has none.
    /// Throws PlatformError for rubbish.
    Task<std::optional<SDWholeDisk>> readDiskInfo(std::string identifier, const DiskLayout* layout) const;

    /// One attempt to read a disk again, from the list on. Throws TesselError where no other attempt can
    /// help; any other error is part of what was observed.
    Task<DiskObservation> observeDisk(std::string identifier) const;

    /// Every whole disk in display order. A disk whose details can't be read is a placeholder.
    Task<std::vector<SDWholeDisk>> scanDisks() const;

    /// A fresh record of the selected disk, once it is certain that it is the same disk and still eligible.
    /// Tries three times, 0.2 seconds apart. Throws TesselError: diskChanged, unsafeDisk, operationCancelled,
    /// or what the list command failed with.
    Task<SDWholeDisk> revalidateDisk(SDWholeDisk selected) const;

    /// The record of a listed disk whose details can't be read. Never eligible.
    static SDWholeDisk placeholderDisk(const std::string& identifier, const DiskLayout* layout);

  private:
    Task<std::optional<SDWholeDisk>> attemptRevalidation(SDWholeDisk selected) const;

    SystemUtilities utilities;
};

}  // namespace tessel
