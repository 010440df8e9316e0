#include "platform/FileDescriptor.h"

#include <unistd.h>

namespace tessel {

void FileDescriptor::close() {
    // An interrupted call is not repeated, because the descriptor is gone either way.
    if (isOpen()) ::close(std::exchange(descriptor, none));
}

}  // namespace tessel
