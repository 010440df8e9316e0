#include <fuse3/fuse.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string>
#include <string_view>

/// A file system with one file of zeros, "os.img". After SIGUSR1 nobody gets an answer beyond a certain
/// offset any more, as from a share whose server has gone:
///
///     stalling-file-system MOUNT-POINT SIZE STALLS-FROM
namespace {

off_t fileSize = 0;
off_t stallsFrom = 0;
volatile sig_atomic_t isStalled = 0;

int describe(const char* path, struct stat* status, fuse_file_info*) {
    *status = {};
    const std::string_view name = path;
    if (name == "/") {
        status->st_mode = S_IFDIR | 0755;
        return 0;
    }
    if (name != "/os.img") return -ENOENT;
    status->st_mode = S_IFREG | 0644;
    status->st_size = fileSize;
    return 0;
}

int readZeros(const char*, char* bytes, size_t size, off_t offset, fuse_file_info*) {
    while (isStalled && offset + static_cast<off_t>(size) > stallsFrom)
        pause();
    std::memset(bytes, 0, size);
    return static_cast<int>(size);
}

}  // namespace

int main(int, char* arguments[]) {
    fileSize = std::stoll(arguments[2]);
    stallsFrom = std::stoll(arguments[3]);
    signal(SIGUSR1, [](int) { isStalled = 1; });
    const fuse_operations operations{.getattr = describe, .read = readZeros};
    char* options[] = {arguments[0], arguments[1], const_cast<char*>("-f"), nullptr};
    return fuse_main(3, options, &operations, nullptr);
}
