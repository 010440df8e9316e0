#pragma once

#include <string>

#include "platform/FileDescriptor.h"
#include "platform/Process.h"

namespace tessel {

/// Keeps what a child prints into a pipe, up to `Process::outputLimit`.
class CollectingPipe {
  public:
    /// Throws PlatformError when there are no descriptors left.
    CollectingPipe();
    CollectingPipe(const CollectingPipe&) = delete;
    CollectingPipe& operator=(const CollectingPipe&) = delete;

    [[nodiscard]] int writingEnd() const { return writer.get(); }

    /// Returns the reading end, which may be used for as long as the pipe exists. Call it after the child
    /// has been launched: it closes the writing end, since the stream finishes only when nobody is left who
    /// could write.
    [[nodiscard]] Process::Stream stream();
    [[nodiscard]] const std::string& collected() const { return bytes; }

  private:
    Process::Stream::State readMore();

    FileDescriptor reader;
    FileDescriptor writer;
    std::string bytes;
};

}  // namespace tessel
