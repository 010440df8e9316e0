#include "platform/DescriptorChannel.h"

#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

#include "platform/NewDescriptors.h"

namespace tessel {

DescriptorChannel DescriptorChannel::create() {
    DescriptorPair ends = makeSocketPair();
    return {std::move(ends.first), std::move(ends.second)};
}

std::optional<int> findDescriptor(std::span<const std::byte> controlData) {
    while (controlData.size() >= sizeof(cmsghdr)) {
        cmsghdr header{};
        std::memcpy(&header, controlData.data(), sizeof header);
        if (header.cmsg_len < sizeof header || header.cmsg_len > controlData.size()) return std::nullopt;

        int descriptor = 0;
        if (header.cmsg_len >= CMSG_LEN(sizeof descriptor) && header.cmsg_level == SOL_SOCKET &&
            header.cmsg_type == SCM_RIGHTS) {
            std::memcpy(&descriptor, controlData.data() + CMSG_LEN(0), sizeof descriptor);
            return descriptor;
        }
        // The space that an entry of this length takes, in the system's alignment.
        const size_t space = CMSG_SPACE(header.cmsg_len - CMSG_LEN(0));
        controlData = controlData.subspan(std::min(space, controlData.size()));
    }
    return std::nullopt;
}

ReceivedDescriptor receiveDescriptor(int socket) {
    using enum ReceivedDescriptor::Outcome;
    std::array<std::byte, 16> data{};
    // CMSG_SPACE is rounded up and would admit two descriptors.
    alignas(cmsghdr) std::array<std::byte, CMSG_LEN(sizeof(int))> control{};
    std::array vectors{iovec{.iov_base = data.data(), .iov_len = data.size()}};
    msghdr message{};
    message.msg_iov = vectors.data();
    message.msg_iovlen = vectors.size();
    message.msg_control = control.data();
    message.msg_controllen = control.size();

    ssize_t count = 0;
    do {
        count = receiveMessage(socket, message);
    } while (count < 0 && errno == EINTR);
    if (count < 0) return {failed, {}, errno};

    const auto found = findDescriptor(std::span(control).first(message.msg_controllen));
    FileDescriptor descriptor;
    if (found) descriptor = FileDescriptor(*found);
    if (count == 0) return {closed, {}};
    if (message.msg_flags & MSG_CTRUNC) return {truncated, {}};
    if (!found) return {missing, {}};
    if (!descriptor.isOpen()) return {invalid, {}};
    return {received, std::move(descriptor)};
}

}  // namespace tessel
