#include "benchmarks/BlockThrottle.h"

#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <fstream>
#include <string>

namespace tessel::benchmark {

namespace {

const std::filesystem::path controller = "/sys/fs/cgroup/blkio";
const std::filesystem::path group = controller / "velmora-tessel-benchmark";

void moveThisProcessTo(const std::filesystem::path& folder) {
    std::ofstream(folder / "cgroup.procs") << getpid() << std::endl;
}

}  // namespace

bool BlockThrottle::isAvailable() {
    return std::filesystem::exists(controller / "blkio.throttle.read_bps_device") &&
           access(controller.c_str(), W_OK) == 0;
}

BlockThrottle::BlockThrottle(const std::filesystem::path& device, uint64_t bytesPerSecond) {
    struct stat status{};
    stat(device.c_str(), &status);
    const auto limit = std::to_string(major(status.st_rdev)) + ":" + std::to_string(minor(status.st_rdev)) +
                       " " + std::to_string(bytesPerSecond);
    std::filesystem::create_directory(group);
    for (const auto* file : {"blkio.throttle.read_bps_device", "blkio.throttle.write_bps_device"}) {
        std::ofstream(group / file) << limit << std::endl;
    }
    moveThisProcessTo(group);
}

BlockThrottle::~BlockThrottle() {
    moveThisProcessTo(controller);
    std::error_code ignored;
    std::filesystem::remove(group, ignored);
}

}  // namespace tessel::benchmark
