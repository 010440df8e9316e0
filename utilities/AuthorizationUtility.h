#pragma once

#include <iosfwd>
#include <span>
#include <string>

#include "platform/FileDescriptor.h"

namespace tessel {

/// Opens disks for the authorization utility.
class DiskOpener {
  public:
    virtual ~DiskOpener() = default;

    /// Opens a whole disk such as "disk4" for reading and writing once the user has agreed, however long that
    /// takes. Throws PlatformError, whose description the utility prints; it is "User canceled." if the user
    /// did not agree.
    [[nodiscard]] virtual FileDescriptor open(const std::string& identifier) = 0;
};

/// Runs the authorization utility: "-stdoutpipe -o 2 /dev/rdiskN" opens the disk and sends its descriptor in
/// one message over the socket. Prints failures on `errors`. Returns the exit status: 0, or 1 when nothing
/// was sent, or 64 when the arguments are wrong.
[[nodiscard]] int runAuthorizationUtility(std::span<const std::string> arguments, DiskOpener& disks,
                                          int socket, std::ostream& errors);

}  // namespace tessel
