#pragma once

#include <sys/socket.h>

#include "platform/FileDescriptor.h"

/// Calls that give this process descriptors, all of which are close-on-exec.
namespace tessel {

struct DescriptorPair {
    FileDescriptor first;
    FileDescriptor second;
};

/// What is written to the second can be read from the first. Throws PlatformError.
DescriptorPair makePipe();

/// Two stream sockets that are connected with each other. Throws PlatformError.
DescriptorPair makeSocketPair();

/// As recvmsg(2).
ssize_t receiveMessage(int socket, msghdr& message);

}  // namespace tessel
