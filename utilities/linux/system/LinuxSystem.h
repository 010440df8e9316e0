#pragma once

#include "utilities/linux/BlockSystem.h"

namespace tessel {

/// This computer. UDisks2 does everything that needs rights, and without it every operation fails; the rest
/// is read from the kernel and the device database.
class LinuxSystem : public BlockSystem {
  public:
    Machine read() override;
    void unmount(const std::string& device) override;
    FileDescriptor open(const std::string& device) override;
    void flush() override;
    Ejection eject(const std::string& device) override;
    void wait(std::chrono::milliseconds duration) override;
};

}  // namespace tessel
