#include "utilities/AuthorizationUtility.h"

#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <optional>
#include <ostream>
#include <string_view>

#include "foundation/Errors.h"
#include "utilities/CommandLine.h"

namespace tessel {

namespace {

constexpr std::string_view usage = "Usage: authopen -stdoutpipe -o 2 /dev/rdiskN\n";

std::optional<std::string> requestedDisk(std::span<const std::string> arguments) {
    constexpr std::array<std::string_view, 3> options{"-stdoutpipe", "-o", "2"};
    if (arguments.size() != options.size() + 1) return std::nullopt;
    if (!std::ranges::equal(arguments.first(options.size()), options)) return std::nullopt;
    return wholeDiskIn(arguments.back(), "/dev/r");
}

void sendDescriptor(int socket, int descriptor) {
    // A stream carries control data only along with at least one byte of ordinary data.
    char data = 0;
    std::array vectors{iovec{.iov_base = &data, .iov_len = sizeof data}};
    alignas(cmsghdr) std::array<std::byte, CMSG_SPACE(sizeof descriptor)> control{};
    msghdr message{};
    message.msg_iov = vectors.data();
    message.msg_iovlen = vectors.size();
    message.msg_control = control.data();
    message.msg_controllen = control.size();

    cmsghdr* const rights = CMSG_FIRSTHDR(&message);
    rights->cmsg_level = SOL_SOCKET;
    rights->cmsg_type = SCM_RIGHTS;
    rights->cmsg_len = CMSG_LEN(sizeof descriptor);
    std::memcpy(CMSG_DATA(rights), &descriptor, sizeof descriptor);

    if (sendmsg(socket, &message, MSG_NOSIGNAL) < 0)
        throw posixError("The descriptor could not be sent", errno);
}

}  // namespace

int runAuthorizationUtility(std::span<const std::string> arguments, DiskOpener& disks, int socket,
                            std::ostream& errors) {
    const auto identifier = requestedDisk(arguments);
    if (!identifier) {
        errors << usage;
        return wrongUsage;
    }
    try {
        sendDescriptor(socket, disks.open(*identifier).get());
        return success;
    } catch (const std::exception& error) {
        errors << error.what() << '\n';
        return failure;
    }
}

}  // namespace tessel
