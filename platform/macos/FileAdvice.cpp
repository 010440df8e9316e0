#include "platform/Files.h"

#include <fcntl.h>

namespace tessel {

void adviseReadingOnce(int descriptor) {
    fcntl(descriptor, F_NOCACHE, 1);
}

void adviseFinished(int, uint64_t, uint64_t) {
    // Reading past the cache leaves next to nothing to drop.
}

}  // namespace tessel
