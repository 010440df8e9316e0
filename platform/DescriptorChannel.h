#pragma once

#include <cstddef>
#include <optional>
#include <span>

#include "platform/FileDescriptor.h"

namespace tessel {

/// Two connected sockets over which another program hands back an open descriptor.
struct DescriptorChannel {
    FileDescriptor receivingEnd;
    FileDescriptor sendingEnd;  ///< the other program's standard output

    /// Opens both sockets. Throws PlatformError.
    [[nodiscard]] static DescriptorChannel create();
};

/// The result of receiving one message on a channel.
struct ReceivedDescriptor {
    enum class Outcome {
        received,
        failed,     ///< the system's call failed: see errorCode
        closed,     ///< the other end was closed before anything was sent
        truncated,  ///< the message held more than one descriptor
        missing,    ///< the message held no descriptor
        invalid,    ///< the message held a negative descriptor
    };

    Outcome outcome;
    FileDescriptor descriptor;  ///< close-on-exec; open only when received
    int errorCode = 0;
};

/// Waits for one message. Closes any descriptor that arrives in a refused message.
[[nodiscard]] ReceivedDescriptor receiveDescriptor(int socket);

/// Returns the descriptor in the first well-formed rights entry of a message's control data, if there is one.
[[nodiscard]] std::optional<int> findDescriptor(std::span<const std::byte> controlData);

}  // namespace tessel
