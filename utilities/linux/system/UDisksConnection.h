#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/FileDescriptor.h"
#include "utilities/linux/BlockSystem.h"
#include "utilities/linux/Machine.h"

using UDisksClient = struct _UDisksClient;

namespace tessel {

/// The desktop's disk service, UDisks2, on the system bus. It asks the person where it must, for as
/// long as it takes. What it says is what it said when this was made. Operations throw PlatformError, worded
/// as BlockSystem says.
class UDisksConnection {
  public:
    /// Throws PlatformError when UDisks2 is missing.
    UDisksConnection();

    /// Fills in what UDisks2 says about each of the devices.
    void describe(std::vector<BlockDevice>& devices) const;

    void unmount(const std::string& device) const;
    [[nodiscard]] FileDescriptor open(const std::string& device) const;
    [[nodiscard]] BlockSystem::Ejection eject(const std::string& device) const;

  private:
    struct Disconnect {
        void operator()(UDisksClient* client) const;
    };
    std::unique_ptr<UDisksClient, Disconnect> client;
};

}  // namespace tessel
