#pragma once

#include <chrono>
#include <exception>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "model/SDWholeDisk.h"
#include "model/TesselError.h"
#include "platform/concurrency/Task.h"
#include "services/CommandRunner.h"
#include "services/DiskPropertyLists.h"

namespace tessel {

/// The results of the search for an expected disk.
struct DiskSearch {
    std::optional<SDWholeDisk> found;      ///< the fresh record; absent if no attempt found the disk
    int attempts = 0;                      ///< the number of attempts
    bool isListed = false;                 ///< whether the last list still had its identifier
    std::optional<SDWholeDisk> otherDisk;  ///< the last disk seen in its place
    std::exception_ptr readError;          ///< the last error that another attempt might have avoided
};

/// Returns the error for a disk that was not found: diskGone if it is no longer listed, otherwise
/// diskChanged.
[[nodiscard]] TesselError notFound(const DiskSearch& search);

/// Asks the operating system about disks, through its disk utility. It is stateless: every operation starts
/// from fresh output and runs its commands strictly one after another.
class DiskService {
  public:
    explicit DiskService(std::filesystem::path diskUtility) : diskUtility(std::move(diskUtility)) {}

    /// Runs the disk utility. A non-zero status is a result, not an error.
    Task<CommandResult> runDiskutil(std::vector<std::string> arguments, std::chrono::seconds timeout) const;

    /// Returns the identifiers of all whole disks, with what the list says about each. Throws TesselError if
    /// the command fails or answers with anything other than a disk list, and PlatformError if the answer is
    /// not a property list at all.
    Task<DiskList> listWholeDisks() const;

    /// Returns the details of one disk, with what the list said about it (`layout`, which may be null) filled
    /// in. Returns nothing if the disk has no details. Throws PlatformError if the answer is not a property
    /// list.
    Task<std::optional<SDWholeDisk>> readDiskInfo(std::string identifier, const DiskLayout* layout) const;

    /// Looks for the expected disk until it is found, up to three times and 0.2 seconds apart. The caller
    /// must check whether the disk may still be written to. Throws CancellationError, and TesselError where
    /// another attempt can't help; any other error becomes part of the result.
    Task<DiskSearch> findAgain(SDWholeDisk expected) const;

    /// Returns whether the list of disks lacks this one; false if the list can't be read. Never throws.
    Task<bool> isGone(std::string identifier) const;

    /// Returns every whole disk in display order. A disk whose details can't be read becomes a placeholder.
    Task<std::vector<SDWholeDisk>> scanDisks() const;

    /// Returns a fresh record of the selected disk, once it is certain that it is the same disk and still
    /// eligible. Throws TesselError: operationCancelled, diskChanged, unsafeDisk, or what findAgain() throws.
    Task<SDWholeDisk> revalidateDisk(SDWholeDisk selected) const;

    /// Returns the record of a listed disk whose details can't be read. Such a disk is never eligible.
    static SDWholeDisk placeholderDisk(const std::string& identifier, const DiskLayout* layout);

  private:
    Task<> lookFor(const SDWholeDisk& expected, DiskSearch& search) const;

    std::filesystem::path diskUtility;
};

}  // namespace tessel
