#include "platform/Files.h"

#include <fcntl.h>

namespace tessel {

void adviseReadingOnce(int descriptor) {
    posix_fadvise(descriptor, 0, 0, POSIX_FADV_SEQUENTIAL);
}

void adviseFinished(int descriptor, uint64_t offset, uint64_t length) {
    posix_fadvise(descriptor, static_cast<off_t>(offset), static_cast<off_t>(length), POSIX_FADV_DONTNEED);
}

}  // namespace tessel
