#pragma once

#include <string>

#include "platform/FileDescriptor.h"
#include "platform/Process.h"

namespace tessel {

/// Keeps what a child prints into a pipe, up to `Process::outputLimit` bytes.
class CollectingPipe {
  public:
    /// Opens the pipe. Throws PlatformError when there are no descriptors left.
    CollectingPipe();
    CollectingPipe(const CollectingPipe&) = delete;
    CollectingPipe& operator=(const CollectingPipe&) = delete;

    [[nodiscard]] int writingEnd() const { return writer.get(); }

    /// Returns the reading end, which may be used for as long as the pipe exists. Closes the writing end,
    /// since the stream finishes only when no writer is left. Requires: the child has been launched.
    [[nodiscard]] Process::Stream stream();
    [[nodiscard]] const std::string& collected() const { return bytes; }

  private:
    Process::Stream::State readMore();

    FileDescriptor reader;
    FileDescriptor writer;
    std::string bytes;
};

}  // namespace tessel
