#include "platform/FileDescriptor.h"

#include <unistd.h>

namespace tessel {

void FileDescriptor::close() {
    // Not repeated when interrupted: the descriptor is gone either way.
    if (isOpen()) ::close(std::exchange(descriptor, none));
}

}  // namespace tessel
