#pragma once

#include "utilities/linux/BlockSystem.h"

namespace tessel {

/// This computer. UDisks2 does everything that needs rights, and without it every operation fails; the rest
/// is read from the kernel and udev's database.
class LinuxSystem : public BlockSystem {
  public:
    DiskSnapshot read(const std::string& identifier) override;
    void unmount(const std::string& device, Time deadline) override;
    FileDescriptor open(const std::string& device) override;
    void flush(Time deadline) override;
    EjectOutcome eject(const std::string& device, Time deadline) override;
    Time now() override;
    void wait(std::chrono::milliseconds duration) override;

  private:
    int silences = 0;  ///< the number of times that the kernel did not answer about a file system
};

}  // namespace tessel
