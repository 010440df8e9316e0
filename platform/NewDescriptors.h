#pragma once

#include <sys/socket.h>

#include "platform/FileDescriptor.h"

/// Calls that give this process descriptors, all of which are close-on-exec.
namespace tessel {

struct DescriptorPair {
    FileDescriptor first;
    FileDescriptor second;
};

/// Returns a pipe: what is written to the second descriptor can be read from the first. Throws PlatformError.
DescriptorPair makePipe();

/// Returns two stream sockets that are connected with each other. Throws PlatformError.
DescriptorPair makeSocketPair();

/// Receives a message as recvmsg(2) does.
ssize_t receiveMessage(int socket, msghdr& message);

}  // namespace tessel
