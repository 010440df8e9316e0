#include "platform/DescriptorChannel.h"

#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <cstring>

#include "foundation/Errors.h"

namespace tessel {

DescriptorChannel DescriptorChannel::create() {
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) {
        throw posixError("A socket pair could not be created", errno);
    }
    return {FileDescriptor(ends[0]), FileDescriptor(ends[1])};
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
        controlData = controlData.subspan(std::min(CMSG_ALIGN(header.cmsg_len), controlData.size()));
    }
    return std::nullopt;
}

ReceivedDescriptor receiveDescriptor(int socket) {
    using enum ReceivedDescriptor::Outcome;
    std::array<std::byte, 16> data{};
    // CMSG_SPACE is rounded up and would let two descriptors in.
    alignas(cmsghdr) std::array<std::byte, CMSG_LEN(sizeof(int))> control{};
    iovec vector{.iov_base = data.data(), .iov_len = data.size()};
    msghdr message{};
    message.msg_iov = &vector;
    message.msg_iovlen = 1;
    message.msg_control = control.data();
    message.msg_controllen = control.size();

    ssize_t count = 0;
    do {
        count = recvmsg(socket, &message, MSG_CMSG_CLOEXEC);
    } while (count < 0 && errno == EINTR);
    if (count < 0) return {failed, {}, errno};

    const auto found = findDescriptor(std::span(control).first(message.msg_controllen));
    FileDescriptor descriptor;
    if (found && *found >= 0) descriptor = FileDescriptor(*found);
    if (count == 0) return {closed, {}};
    if (message.msg_flags & MSG_CTRUNC) return {truncated, {}};
    if (!found) return {missing, {}};
    if (!descriptor.isOpen()) return {invalid, {}};
    return {received, std::move(descriptor)};
}

}  // namespace tessel
