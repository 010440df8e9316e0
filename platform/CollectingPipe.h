#pragma once

#include <string>

#include "platform/FileDescriptor.h"
#include "platform/Process.h"

namespace tessel {

/// A pipe that keeps what a child prints, up to `Process::outputLimit`.
class CollectingPipe {
  public:
    /// Throws PlatformError when there are no descriptors left.
    CollectingPipe();
    CollectingPipe(const CollectingPipe&) = delete;
    CollectingPipe& operator=(const CollectingPipe&) = delete;

    [[nodiscard]] int writingEnd() const { return writer.get(); }
    /// To be called once the child is launched: the stream finishes only when nobody else can write.
    void closeWritingEnd() { writer.close(); }

    /// The reading end, for as long as this pipe exists.
    [[nodiscard]] Process::Stream stream();
    [[nodiscard]] const std::string& collected() const { return bytes; }

  private:
    Process::Stream::State readMore();

    FileDescriptor reader;
    FileDescriptor writer;
    std::string bytes;
};

}  // namespace tessel
