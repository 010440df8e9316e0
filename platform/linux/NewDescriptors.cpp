#include "platform/NewDescriptors.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>

#include "foundation/Errors.h"

namespace tessel {

DescriptorPair makePipe() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) throw posixError("A pipe could not be created", errno);
    return {FileDescriptor(ends[0]), FileDescriptor(ends[1])};
}

DescriptorPair makeSocketPair() {
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0)
        throw posixError("A socket pair could not be created", errno);
    return {FileDescriptor(ends[0]), FileDescriptor(ends[1])};
}

ssize_t receiveMessage(int socket, msghdr& message) {
    return recvmsg(socket, &message, MSG_CMSG_CLOEXEC);
}

}  // namespace tessel
