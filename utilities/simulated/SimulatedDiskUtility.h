#pragma once

#include "utilities/DiskUtility.h"
#include "utilities/simulated/ReaderFolder.h"

namespace tessel {

/// The disks of a folder that plays a card reader.
class SimulatedDiskUtility : public DiskUtility {
  public:
    explicit SimulatedDiskUtility(const ReaderFolder& reader) : reader(reader) {}

    PropertyList::Dictionary list() override;
    PropertyList::Dictionary info(const std::string& identifier) override;
    void unmount(const std::string& identifier) override;
    void eject(const std::string& identifier) override;

  private:
    const ReaderFolder& reader;
};

}  // namespace tessel
