#pragma once

#include <chrono>
#include <exception>
#include <optional>
#include <string>
#include <vector>

#include "model/DiskLayout.h"
#include "model/SDWholeDisk.h"
#include "platform/SystemUtilities.h"
#include "platform/concurrency/Task.h"
#include "services/CommandRunner.h"
#include "services/DiskPropertyLists.h"

namespace tessel {

/// What was seen while an expected disk was looked for.
struct DiskSearch {
    std::optional<SDWholeDisk> found;      ///< the fresh record; absent when no attempt found the disk
    int attempts = 0;                      ///< how many it took
    std::optional<SDWholeDisk> otherDisk;  ///< the last one that stood in its place
    std::exception_ptr readError;          ///< the last one that another attempt might have passed
};

/// Asks the operating system about disks, through its disk utility. Stateless: every operation starts from
/// fresh output, and runs its commands strictly one after another.
class DiskService {
  public:
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

    /// Looks for the disk until it is found the same as expected, up to three times and 0.2 seconds apart.
    /// Whether it may still be written to is for the caller to ask. Throws CancellationError, and TesselError
    /// where no other attempt can help; any other error is part of what was seen.
    Task<DiskSearch> findAgain(SDWholeDisk expected) const;

    /// Every whole disk in display order. A disk whose details can't be read is a placeholder.
    Task<std::vector<SDWholeDisk>> scanDisks() const;

    /// A fresh record of the selected disk, once it is certain that it is the same disk and still eligible.
    /// Throws what findAgain() throws, and TesselError: diskChanged or unsafeDisk.
    Task<SDWholeDisk> revalidateDisk(SDWholeDisk selected) const;

    /// The record of a listed disk whose details can't be read. Never eligible.
    static SDWholeDisk placeholderDisk(const std::string& identifier, const DiskLayout* layout);

  private:
    Task<> lookFor(const SDWholeDisk& expected, DiskSearch& search) const;

    SystemUtilities utilities;
};

}  // namespace tessel
