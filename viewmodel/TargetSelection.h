#pragma once

#include <functional>
#include <string>
#include <vector>

#include "foundation/Published.h"
#include "model/SDWholeDisk.h"
#include "platform/SleepWatch.h"

namespace tessel {

/// The disks that the last scan found, and the one among them that is to be written. Only a disk that may be
/// written to can be the target. It may be used on the main thread only.
class TargetSelection {
  public:
    explicit TargetSelection(const std::function<void()>& onChange) :
        disks(onChange, {}),
        selectedDiskID(onChange, "") {}

    Published<std::vector<SDWholeDisk>> disks;  ///< in the order of the scan
    Published<std::string> selectedDiskID;      ///< of the target; empty if there is none

    /// Returns the target, or null.
    [[nodiscard]] const SDWholeDisk* selectedDisk() const;

    /// Takes the disks of a scan, in their order. Keeps the target if a disk of that name may still be
    /// written to. Requires: the watch was made before the scan began.
    void replaceDisks(std::vector<SDWholeDisk> scanned, const SleepWatch& sinceScan);

    /// Returns whether the computer has slept since the scan; readers don't notice an exchange of cards
    /// meanwhile.
    [[nodiscard]] bool mayBeExchanged() const { return sleepWatch.hasSlept(); }

    /// Makes the disk the target and returns it. Returns null and changes nothing if the disk may not be
    /// written to or is not listed.
    const SDWholeDisk* select(const std::string& id);

    /// Clears the target, and removes the ejected card from the list.
    void forget(const std::string& id);

  private:
    SleepWatch sleepWatch;
};

}  // namespace tessel
