#pragma once

#include "utilities/AuthorizationUtility.h"
#include "utilities/simulated/ReaderFolder.h"

namespace tessel {

/// Opens the media of a folder that plays a card reader: files, and loop devices that no other program has
/// open. Any other device is refused, wherever a link leads.
class SimulatedRawDiskOpener : public DiskOpener {
  public:
    explicit SimulatedRawDiskOpener(const ReaderFolder& reader) : reader(reader) {}

    FileDescriptor open(const std::string& identifier) override;

  private:
    const ReaderFolder& reader;
};

}  // namespace tessel
