#pragma once

#include <iosfwd>
#include <span>
#include <string>

#include "foundation/PropertyList.h"

namespace tessel {

/// The operations of the disk utility on disks. Identifiers are those of whole disks, such as "disk4". Every
/// operation may block, and throws PlatformError, whose description the utility prints.
class DiskUtility {
  public:
    virtual ~DiskUtility() = default;

    /// Returns at least "AllDisksAndPartitions", whose entries name the disks.
    [[nodiscard]] virtual PropertyList::Dictionary list() = 0;
    [[nodiscard]] virtual PropertyList::Dictionary info(const std::string& identifier) = 0;
    /// Unmounts every volume of the disk.
    virtual void unmount(const std::string& identifier) = 0;
    virtual void eject(const std::string& identifier) = 0;
};

/// Runs the disk utility: "list -plist", "info -plist /dev/diskN", "unmountDisk force /dev/diskN" or "eject
/// /dev/diskN". Prints answers on `output` and failures on `errors`. Returns the exit status: 0, or 1 when
/// the operation failed, or 64 when the arguments are none of these.
[[nodiscard]] int runDiskUtility(std::span<const std::string> arguments, DiskUtility& disks,
                                 std::ostream& output, std::ostream& errors);

}  // namespace tessel
