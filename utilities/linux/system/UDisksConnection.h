#pragma once

#include <sys/types.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/FileDescriptor.h"
#include "utilities/linux/BlockSystem.h"
#include "utilities/linux/DiskSnapshot.h"

// NOLINTNEXTLINE(bugprone-reserved-identifier): the library itself declares it so.
using UDisksClient = struct _UDisksClient;

namespace tessel {

/// A connection to the desktop's disk service (UDisks2) over the system bus. Where UDisks2 has to ask the
/// user, an operation takes as long as the user does, within its limit if it has one. Descriptions are as of
/// the moment when the connection was made. Operations throw PlatformError, with the texts that BlockSystem
/// names.
class UDisksConnection {
  public:
    using Duration = std::chrono::steady_clock::duration;

    /// Connects. Throws PlatformError if UDisks2 is not running.
    UDisksConnection();

    /// Fills in the record of UDisks2 for each device.
    void describe(std::vector<KernelDevice>& devices) const;

    /// Returns the record of UDisks2 for the block device with this number, or nothing if it has none.
    [[nodiscard]] std::optional<UDisksRecord> recordOf(dev_t number) const;

    void unmount(const std::string& device, Duration limit) const;
    [[nodiscard]] FileDescriptor open(const std::string& device) const;
    [[nodiscard]] BlockSystem::EjectOutcome eject(const std::string& device, Duration limit) const;

  private:
    struct Disconnect {
        void operator()(UDisksClient* client) const;
    };
    std::unique_ptr<UDisksClient, Disconnect> client;
};

}  // namespace tessel
