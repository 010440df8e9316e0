#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <string_view>

#include "tests/app/HeldCard.h"

namespace tessel {

CardHold slowImage;

}  // namespace tessel

// This replaces the function of the system's library in this program.
extern "C" int lstat(const char* path, struct stat* status) noexcept {
    if (std::string_view(path).ends_with("/slow.img")) tessel::slowImage.waitWhileHeld();
    return static_cast<int>(syscall(SYS_newfstatat, AT_FDCWD, path, status, AT_SYMLINK_NOFOLLOW));
}
