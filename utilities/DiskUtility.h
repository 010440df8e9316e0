#pragma once

#include <iosfwd>
#include <span>
#include <string>

#include "foundation/PropertyList.h"

namespace tessel {

/// Where the disk utility finds disks. Identifiers are those of whole disks, such as "disk4". Every operation
/// may wait, and throws PlatformError, whose description is what the utility prints.
class DiskSource {
  public:
    virtual ~DiskSource() = default;

    /// "AllDisks", "WholeDisks" and "AllDisksAndPartitions".
    [[nodiscard]] virtual PropertyList::Dictionary list() = 0;
    [[nodiscard]] virtual PropertyList::Dictionary info(const std::string& identifier) = 0;
    /// Unmounts every volume of the disk.
    virtual void unmount(const std::string& identifier) = 0;
    virtual void eject(const std::string& identifier) = 0;
};

/// The disk utility: "list -plist", "info -plist /dev/diskN", "unmountDisk force /dev/diskN" and
/// "eject /dev/diskN". Answers are printed on `output`, failures on `errors`. Gives the exit status: 0, 1
/// when the source failed, 64 when the arguments are none of these.
[[nodiscard]] int runDiskUtility(std::span<const std::string> arguments, DiskSource& disks,
                                 std::ostream& output, std::ostream& errors);

}  // namespace tessel
