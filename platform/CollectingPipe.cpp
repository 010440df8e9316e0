#include "platform/CollectingPipe.h"

#include <unistd.h>

#include <array>
#include <cerrno>

#include "platform/NewDescriptors.h"

namespace tessel {

CollectingPipe::CollectingPipe() {
    // Reading must not throw, so all the memory is allocated beforehand.
    bytes.reserve(Process::outputLimit);
    DescriptorPair ends = makePipe();
    reader = std::move(ends.first);
    writer = std::move(ends.second);
}

Process::Stream CollectingPipe::stream() {
    writer.close();
    return {reader.get(), [this] { return readMore(); }};
}

Process::Stream::State CollectingPipe::readMore() {
    std::array<char, size_t{64} << 10> chunk;
    const ssize_t count = read(reader.get(), chunk.data(), chunk.size());
    // If an interruption counted as the end of the stream, part of the output would pass for the whole.
    if (count < 0 && errno == EINTR) return Process::Stream::State::open;
    if (count <= 0) return Process::Stream::State::finished;
    if (bytes.size() + static_cast<size_t>(count) > Process::outputLimit) return Process::Stream::State::full;
    bytes.append(chunk.data(), static_cast<size_t>(count));
    return Process::Stream::State::open;
}

}  // namespace tessel
