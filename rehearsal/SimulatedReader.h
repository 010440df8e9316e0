#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "platform/InstalledFiles.h"
#include "rehearsal/LoopDevice.h"
#include "rehearsal/SimulatedDisk.h"
#include "utilities/simulated/DiskBehaviour.h"
#include "utilities/simulated/ReaderFolder.h"

namespace tessel {

/// A simulated card reader. Its loop devices are detached when it is destroyed, but its folder stays.
/// Operations throw PlatformError or std::filesystem::filesystem_error.
class SimulatedReader {
  public:
    /// Makes the reader's folder, which may exist already but must be empty. The programs folder holds
    /// "simulated-diskutil" and "simulated-authopen".
    SimulatedReader(const std::filesystem::path& folder, const std::filesystem::path& programsFolder);

    /// Puts a new disk into the reader.
    void addDisk(const SimulatedDisk& disk);
    void setBehaviour(const std::string& identifier, const DiskBehaviour& behaviour);
    /// Adds details under the keys of the disk utility, or replaces them.
    void changeDetails(const std::string& identifier, const PropertyList::Dictionary& changes);
    /// Takes the disk out of the reader, as an eject does.
    void removeDisk(const std::string& identifier);
    /// Puts the disk back as it was when it was taken out.
    void reinsert(const std::string& identifier);

    /// Returns the identifiers of the disks that are in the reader.
    [[nodiscard]] std::vector<std::string> disks() const;
    [[nodiscard]] const std::filesystem::path& path() const { return folder; }
    /// Returns the path that the authorization utility opens for the disk.
    [[nodiscard]] std::filesystem::path mediumPath(const std::string& identifier) const;
    /// Returns every run of the utilities so far, such as "diskutil eject /dev/disk4".
    [[nodiscard]] std::vector<std::string> calls() const;
    /// Returns the programs that answer for this reader.
    [[nodiscard]] SystemUtilities utilities() const;

  private:
    void makeMedium(const SimulatedDisk& disk);

    std::filesystem::path folder;
    ReaderFolder reader;
    std::map<std::string, LoopDevice> loopDevices;
};

}  // namespace tessel
