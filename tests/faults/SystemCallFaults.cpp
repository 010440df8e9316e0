#include "tests/faults/SystemCallFaults.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <linux/fs.h>
#include <poll.h>
#include <spawn.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <condition_variable>
#include <cstdarg>
#include <mutex>
#include <optional>
#include <utility>

namespace tessel {

namespace {

using File = std::pair<dev_t, ino_t>;

std::optional<File> fileOf(int folder, const char* path, int flags) {
    struct stat status{};
    if (syscall(SYS_newfstatat, folder, path, &status, flags) != 0) return std::nullopt;
    return File{status.st_dev, status.st_ino};
}

/// The planted fault. All threads share it, and so do the calls below, which belong to the whole program.
struct Plan {
    std::mutex mutex;
    std::optional<File> card;
    std::filesystem::path imagePath;
    std::optional<SystemCallFault> fault;
    int calls = 0;
    bool hasShown = false;
    std::condition_variable changed;
    std::atomic<bool> isHurried = false;
};

Plan plan;

/// The time by which this thread's clock is ahead of the system's, in nanoseconds.
thread_local int64_t hurriedTime = 0;

/// Counts a call. Returns the fault if it is this call's turn.
std::optional<SystemCallFault> faultOf(const std::string& call) {
    const std::lock_guard lock(plan.mutex);
    if (!plan.fault || plan.fault->call != call) return std::nullopt;
    ++plan.calls;
    const bool isDue =
        plan.fault->persists ? plan.calls >= plan.fault->occurrence : plan.calls == plan.fault->occurrence;
    if (!isDue) return std::nullopt;
    plan.hasShown = true;
    plan.changed.notify_all();
    return plan.fault;
}

/// Returns the call's name with the file that the descriptor leads to, for calls that depend on it.
std::string withObject(const char* call, int descriptor) {
    const auto file = fileOf(descriptor, "", AT_EMPTY_PATH);
    const std::lock_guard lock(plan.mutex);
    if (file && file == plan.card) return std::string(call) + " card";
    if (file && file == fileOf(AT_FDCWD, plan.imagePath.c_str(), 0)) return std::string(call) + " image";
    return call;
}

std::string withObject(const char* call, const char* path) {
    const std::lock_guard lock(plan.mutex);
    return path == plan.imagePath ? std::string(call) + " image" : std::string(call);
}

void waitWhilePlanted() {
    std::unique_lock lock(plan.mutex);
    plan.changed.wait(lock, [] { return !plan.fault; });
}

/// Counts a call. Returns the fault if the call is to fail; a call that never answers waits here.
std::optional<SystemCallFault> failureOf(const std::string& call) {
    auto fault = faultOf(call);
    if (!fault || fault->effect != "never answers") return fault;
    waitWhilePlanted();
    return std::nullopt;
}

/// Returns the answer of a faulty call that transfers bytes; nothing if it goes on with the new size.
std::optional<ssize_t> transferred(const std::optional<SystemCallFault>& fault, size_t& size) {
    if (!fault) return std::nullopt;
    if (fault->error != 0) {
        errno = fault->error;
        return -1;
    }
    if (fault->effect == "zero") return 0;
    if (fault->effect == "lie") return static_cast<ssize_t>(size);
    if (fault->effect == "short" && size > 1024) size = size / 1024 * 512;
    return std::nullopt;
}

/// Performs the call unless it is to fail.
template <typename Result = int>
Result callUnlessFaulty(const std::string& name, long number, auto... arguments) {
    if (const auto fault = failureOf(name)) {
        errno = fault->error;
        return -1;
    }
    return static_cast<Result>(syscall(number, arguments...));
}

/// Performs a call that reports a size, unless it is to fail; the size may be one byte too large.
int statUnlessFaulty(const std::string& name, struct stat* status, long number, auto... arguments) {
    const auto fault = failureOf(name);
    if (fault && fault->error != 0) {
        errno = fault->error;
        return -1;
    }
    const auto answer = static_cast<int>(syscall(number, arguments...));
    if (fault) ++status->st_size;
    return answer;
}

template <typename Function>
Function* realCall(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

SystemCallFaults::SystemCallFaults(const std::filesystem::path& card, const std::filesystem::path& image) {
    const std::lock_guard lock(plan.mutex);
    plan.card = fileOf(AT_FDCWD, card.c_str(), 0);
    plan.imagePath = image;
}

SystemCallFaults::~SystemCallFaults() {
    remove();
    setHurried(false);
}

void SystemCallFaults::plant(const SystemCallFault& fault) {
    const std::lock_guard lock(plan.mutex);
    plan.fault = fault;
    plan.calls = 0;
    plan.hasShown = false;
}

void SystemCallFaults::awaitShowing() {
    std::unique_lock lock(plan.mutex);
    plan.changed.wait(lock, [] { return plan.hasShown; });
}

bool SystemCallFaults::remove() {
    const std::lock_guard lock(plan.mutex);
    plan.fault.reset();
    plan.changed.notify_all();
    return plan.hasShown;
}

void SystemCallFaults::setHurried(bool isHurried) {
    plan.isHurried = isHurried;
}

}  // namespace tessel

// These replace the functions of the system's library in this program.
extern "C" {

using namespace tessel;

ssize_t read(int descriptor, void* bytes, size_t size) {
    return callUnlessFaulty<ssize_t>("read", SYS_read, descriptor, bytes, size);
}

ssize_t pread(int descriptor, void* bytes, size_t size, off_t offset) {
    if (const auto answer = transferred(failureOf(withObject("pread", descriptor)), size)) return *answer;
    return syscall(SYS_pread64, descriptor, bytes, size, offset);
}

ssize_t pwrite(int descriptor, const void* bytes, size_t size, off_t offset) {
    if (const auto answer = transferred(failureOf(withObject("pwrite", descriptor)), size)) return *answer;
    return syscall(SYS_pwrite64, descriptor, bytes, size, offset);
}

int fsync(int descriptor) {
    return callUnlessFaulty(withObject("fsync", descriptor), SYS_fsync, descriptor);
}

int open(const char* path, int flags, ...) {
    std::va_list rest;
    va_start(rest, flags);
    const auto mode = va_arg(rest, mode_t);
    va_end(rest);
    return callUnlessFaulty(withObject("open", path), SYS_openat, AT_FDCWD, path, flags, mode);
}

int fstat(int descriptor, struct stat* status) noexcept {
    return statUnlessFaulty(withObject("fstat", descriptor), status, SYS_fstat, descriptor, status);
}

int lstat(const char* path, struct stat* status) noexcept {
    return statUnlessFaulty(withObject("lstat", path), status, SYS_newfstatat, AT_FDCWD, path, status,
                            AT_SYMLINK_NOFOLLOW);
}

char* realpath(const char* path, char* resolved) noexcept {
    static_cast<void>(failureOf(withObject("realpath", path)));
    return realCall<decltype(realpath)>("realpath")(path, resolved);
}

int ioctl(int descriptor, unsigned long request, ...) noexcept {
    constexpr unsigned long sequenceNumber = _IOR(0x12, 128, uint64_t);
    std::va_list rest;
    va_start(rest, request);
    void* argument = va_arg(rest, void*);
    va_end(rest);
    const char* name = request == BLKSSZGET        ? "block-size"
                       : request == BLKGETSIZE64   ? "size"
                       : request == sequenceNumber ? "sequence-number"
                                                   : "ioctl";
    const auto fault = faultOf(name);
    if (fault && fault->error != 0) {
        errno = fault->error;
        return -1;
    }
    const auto answer = static_cast<int>(syscall(SYS_ioctl, descriptor, request, argument));
    if (fault && fault->effect == "zero") *static_cast<int*>(argument) = 0;
    if (fault && fault->effect == "lie") *static_cast<int*>(argument) += 512;
    if (fault && fault->effect.starts_with("is "))
        *static_cast<int*>(argument) = std::stoi(fault->effect.substr(3));
    return answer;
}

int fcntl(int descriptor, int command, ...) {
    std::va_list rest;
    va_start(rest, command);
    void* argument = va_arg(rest, void*);
    va_end(rest);
    return callUnlessFaulty(command == F_SETFL ? withObject("direct-access", descriptor) : "fcntl", SYS_fcntl,
                            descriptor, command, argument);
}

int flock(int descriptor, int operation) noexcept {
    return callUnlessFaulty("flock", SYS_flock, descriptor, operation);
}

int pipe2(int* ends, int flags) noexcept {
    return callUnlessFaulty("pipe2", SYS_pipe2, ends, flags);
}

int socketpair(int domain, int type, int protocol, int* ends) noexcept {
    return callUnlessFaulty("socketpair", SYS_socketpair, domain, type, protocol, ends);
}

ssize_t recvmsg(int socket, msghdr* message, int flags) {
    return callUnlessFaulty<ssize_t>("recvmsg", SYS_recvmsg, socket, message, flags);
}

int pidfd_open(pid_t process, unsigned flags) noexcept {
    return callUnlessFaulty("pidfd_open", SYS_pidfd_open, process, flags);
}

pid_t waitpid(pid_t process, int* status, int options) {
    return callUnlessFaulty("waitpid", SYS_wait4, process, status, options, nullptr);
}

int posix_spawn(pid_t* process, const char* path, const posix_spawn_file_actions_t* actions,
                const posix_spawnattr_t* attributes, char* const arguments[], char* const environment[]) {
    if (const auto fault = faultOf("posix_spawn")) return fault->error;
    return realCall<decltype(posix_spawn)>("posix_spawn")(process, path, actions, attributes, arguments,
                                                          environment);
}

int poll(pollfd* watched, nfds_t count, int milliseconds) {
    constexpr int moment = 500;  // more than a busy computer needs for a command that does not hang
    const bool isHurried = plan.isHurried && milliseconds > moment;
    const auto ready = callUnlessFaulty("poll", SYS_poll, watched, count, isHurried ? moment : milliseconds);
    if (isHurried && ready == 0) hurriedTime += int64_t{milliseconds} * 1'000'000;
    return ready;
}

int clock_gettime(clockid_t clock, timespec* time) noexcept {
    const auto answer = static_cast<int>(syscall(SYS_clock_gettime, clock, time));
    constexpr int64_t second = 1'000'000'000;
    const int64_t nanoseconds = time->tv_nsec + hurriedTime;
    time->tv_sec += nanoseconds / second;
    time->tv_nsec = nanoseconds % second;
    return answer;
}

}  // extern "C"
