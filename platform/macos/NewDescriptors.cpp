#include "platform/NewDescriptors.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

#include "foundation/Errors.h"

namespace tessel {

namespace {

/// Marks the descriptor close-on-exec in a second call, since this system has no call that does both. A child
/// that this program starts in between still gets nothing: see keepOtherDescriptors.
FileDescriptor closedOnExec(int descriptor) {
    fcntl(descriptor, F_SETFD, FD_CLOEXEC);
    return FileDescriptor(descriptor);
}

}  // namespace

DescriptorPair makePipe() {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) throw posixError("A pipe could not be created", errno);
    return {closedOnExec(ends[0]), closedOnExec(ends[1])};
}

DescriptorPair makeSocketPair() {
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_STREAM, 0, ends.data()) != 0)
        throw posixError("A socket pair could not be created", errno);
    return {closedOnExec(ends[0]), closedOnExec(ends[1])};
}

ssize_t receiveMessage(int socket, msghdr& message) {
    // This system also opens the descriptors that don't fit into the buffer, and does not report them. So the
    // buffer fits the longest message, and all descriptors of a message that is too long for the caller are
    // closed.
    alignas(cmsghdr) std::array<unsigned char, 2048> control{};
    msghdr whole = message;
    whole.msg_control = control.data();
    whole.msg_controllen = sizeof control;
    const ssize_t count = recvmsg(socket, &whole, 0);
    if (count < 0) return count;

    const bool fits = whole.msg_controllen <= message.msg_controllen;
    for (cmsghdr* entry = CMSG_FIRSTHDR(&whole); entry; entry = CMSG_NXTHDR(&whole, entry)) {
        if (entry->cmsg_level != SOL_SOCKET || entry->cmsg_type != SCM_RIGHTS) continue;
        const auto* const end = std::min(reinterpret_cast<unsigned char*>(entry) + entry->cmsg_len,
                                         control.data() + whole.msg_controllen);
        for (const auto* place = CMSG_DATA(entry); place + sizeof(int) <= end; place += sizeof(int)) {
            int descriptor = 0;
            std::memcpy(&descriptor, place, sizeof descriptor);
            if (fits)
                fcntl(descriptor, F_SETFD, FD_CLOEXEC);
            else
                close(descriptor);
        }
    }
    message.msg_flags = whole.msg_flags | (fits ? 0 : MSG_CTRUNC);
    message.msg_controllen = fits ? whole.msg_controllen : 0;
    std::memcpy(message.msg_control, control.data(), message.msg_controllen);
    return count;
}

}  // namespace tessel
