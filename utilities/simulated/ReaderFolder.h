#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/PropertyList.h"
#include "utilities/simulated/DiskBehaviour.h"

namespace tessel {

/// A folder that plays a card reader, and every other disk of its computer:
///
///     diskutil, authopen      links to the programs that answer for it
///     calls.log               a line for each time one of them was run
///     disk4/details.plist     what is known of the disk; its "Partitions" are for the list alone
///     disk4/behaviour.plist   how it misbehaves; may be missing
///     disk4/medium            its contents, or a link to a loop device; missing when it is never opened
///     disk4/ejected           there while the disk is out of the reader
///
/// Several processes may use a folder at once. Operations throw PlatformError.
class ReaderFolder {
  public:
    explicit ReaderFolder(std::filesystem::path folder) : folder(std::move(folder)) {}

    void logCall(std::string_view line) const;
    [[nodiscard]] std::vector<std::string> calls() const;

    /// Returns the identifiers of the disks that are in the reader, ordered by their numbers.
    [[nodiscard]] std::vector<std::string> disks() const;
    /// Sets the details, even of a disk outside the reader. The functions below work for such a disk, too.
    void setDetails(const std::string& disk, const PropertyList::Dictionary& details) const;
    void setBehaviour(const std::string& disk, const DiskBehaviour& behaviour) const;
    void putIn(const std::string& disk) const;
    void takeOut(const std::string& disk) const;
    [[nodiscard]] std::filesystem::path mediumPath(const std::string& disk) const {
        return folder / disk / "medium";
    }

    /// Returns the details. Fails as the disk utility does when the disk is not in the reader; so do the
    /// functions below.
    [[nodiscard]] PropertyList::Dictionary details(const std::string& disk) const;
    [[nodiscard]] DiskBehaviour behaviour(const std::string& disk) const;

  private:
    bool isIn(const std::string& disk) const;
    void requireIn(const std::string& disk) const;

    std::filesystem::path folder;
};

}  // namespace tessel
