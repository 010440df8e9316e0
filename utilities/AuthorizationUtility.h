#pragma once

#include <iosfwd>
#include <span>
#include <string>

#include "platform/FileDescriptor.h"

namespace tessel {

/// Who opens disks for the authorization utility.
class DescriptorSource {
  public:
    virtual ~DescriptorSource() = default;

    /// Opens a whole disk such as "disk4" for reading and writing, once the user agreed. May wait for the
    /// user. Throws PlatformError, whose description is what the utility prints; a user who does not agree is
    /// "User canceled.".
    [[nodiscard]] virtual FileDescriptor open(const std::string& identifier) = 0;
};

/// The authorization utility: "-stdoutpipe -o 2 /dev/rdiskN" opens the disk and sends its descriptor in one
/// message over the socket. Failures are printed on `errors`. Gives the exit status: 0, 1 when nothing was
/// sent, 64 when the arguments are wrong.
[[nodiscard]] int runAuthorizationUtility(std::span<const std::string> arguments, DescriptorSource& disks,
                                          int socket, std::ostream& errors);

}  // namespace tessel
