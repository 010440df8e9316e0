/// Compares the write path with the commands that a user would type instead, side by side in one run.

#include <fcntl.h>
#include <linux/loop.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "benchmarks/BlockThrottle.h"
#include "benchmarks/Table.h"
#include "benchmarks/Workshop.h"
#include "foundation/Text.h"
#include "platform/BlockDevice.h"
#include "platform/CollectingPipe.h"
#include "platform/Process.h"
#include "platform/concurrency/Background.h"
#include "rehearsal/LoopDevice.h"
#include "rehearsal/SimulatedReader.h"
#include "services/DiskService.h"
#include "services/ImageTransfer.h"
#include "tests/support/RunLoop.h"

namespace tessel::benchmark {

namespace {

constexpr int scans = 3;

void shell(const std::string& command) {
    const std::string quiet = "{ " + command + "; } >/dev/null 2>&1";
    if (std::system(quiet.c_str()) != 0) throw std::runtime_error("failed: " + command);
}

AuthorizedRawDiskHandle openDevice(const fs::path& path) {
    auto device = makeBlockDevice(FileDescriptor(open(path.c_str(), O_RDWR | O_EXCL | O_CLOEXEC)));
    const auto blockSize = device->blockSize().value;
    const auto blockCount = device->blockCount().value;
    if (!device->disableCaching().isSuccess()) throw std::runtime_error("no uncached access");
    return {std::move(device), blockSize, blockCount};
}

Task<> transferInBackground(ImageTransfer request, std::shared_ptr<RunLoop> loop) {
    const auto report = [&loop](const ImageWriteProgress&) { loop->call([] {}); };
    co_await inBackground([&](const std::stop_token& stop) { writeImage(request, stop, report); });
}

void transfer(const fs::path& image, const fs::path& device) {
    const auto loop = std::make_shared<RunLoop>();
    const auto handle = openDevice(device);
    runUntilFinished(loop, transferInBackground({image, fs::file_size(image), handle, true}, loop));
}

/// Returns what a user would type to write, flush and read back without any proof.
std::string bareCopy(const fs::path& image, const fs::path& device) {
    return "dd bs=8M oflag=direct conv=fsync if=" + image.string() + " of=" + device.string() +
           " && dd bs=8M iflag=direct,count_bytes count=" + std::to_string(fs::file_size(image)) +
           " if=" + device.string() + " of=/dev/null";
}

/// Returns what a user would type to write, flush and verify.
std::string typedCommands(const fs::path& image, const fs::path& device) {
    return "sha256sum " + image.string() + " && dd bs=8M conv=fsync if=" + image.string() +
           " of=" + device.string() + " && cmp -n " + std::to_string(fs::file_size(image)) + " " +
           image.string() + " " + device.string();
}

/// Keeps both contenders from using huge pages. The throttle holds a whole request back and then performs it
/// at full speed, so it would slow down the longer requests of huge pages, which a card does not.
class OrdinaryPages {
  public:
    OrdinaryPages() { prctl(PR_SET_THP_DISABLE, 1, 0, 0, 0); }
    OrdinaryPages(const OrdinaryPages&) = delete;
    OrdinaryPages& operator=(const OrdinaryPages&) = delete;
    ~OrdinaryPages() { prctl(PR_SET_THP_DISABLE, 0, 0, 0, 0); }
};

struct Comparison {
    std::string name;
    fs::path image;
    fs::path device;
    std::string command;
    std::optional<double> limit;
    int rounds = 3;
};

double median(std::vector<double> seconds) {
    const auto middle = seconds.begin() + static_cast<std::ptrdiff_t>(seconds.size() / 2);
    std::ranges::nth_element(seconds, middle);
    return *middle;
}

/// Makes both contenders write, flush and read back the same image in turns, each with the image in the
/// cache. Compares the medians, because the disk that plays the card is at times faster than it can sustain.
void compare(const Comparison& comparison) {
    std::vector<double> ours;
    std::vector<double> theirs;
    const auto warm = [&] { shell("cat " + comparison.image.string()); };
    for (int round = 0; round < comparison.rounds; ++round) {
        warm();
        ours.push_back(secondsOf([&] { transfer(comparison.image, comparison.device); }));
        warm();
        theirs.push_back(secondsOf([&] { shell(comparison.command); }));
    }
    printRow({comparison.name, median(ours), median(theirs), "s", comparison.limit});
}

void compareAtSpeed(const Workshop& workshop, const fs::path& device, uint64_t megabytesPerSecond,
                    uint64_t size, double limit) {
    const auto speed = std::to_string(megabytesPerSecond) + " MB/s";
    const auto image = workshop.makeImage(speed.substr(0, 2) + ".img", size);
    const BlockThrottle throttle(device, megabytesPerSecond * 1'000'000);
    const OrdinaryPages pages;
    compare({.name = std::to_string(size / MiB) + " MiB, " + speed + " / bare direct dd, flushed",
             .image = image,
             .device = device,
             .command = bareCopy(image, device),
             .limit = limit});
}

/// Compares transfers of an image in memory. A real card is a disk of its own, so reading the image a second
/// time costs it nothing; a disk that holds both the image and the card would be slowed down.
void compareWithImageInMemory(const fs::path& device) {
    const Workshop memory("/dev/shm");
    const auto image = memory.makeImage("large.img", 1024 * MiB);
    compare({"1 GiB / bare direct dd, flushed", image, device, bareCopy(image, device), 1.2, 5});
}

/// Attaches the file, and bypasses its cache where its file system allows it.
LoopDevice attach(const fs::path& file) {
    LoopDevice loop({.file = file});
    const FileDescriptor descriptor(open(loop.path().c_str(), O_RDWR | O_CLOEXEC));
    if (ioctl(descriptor.get(), LOOP_SET_DIRECT_IO, 1UL) != 0)
        std::fputs("The cache of the file that stands in for the card could not be bypassed.\n", stderr);
    return loop;
}

void compareTransfers(const Workshop& workshop) {
    printHeader("Write, flush and verify");
    if (!LoopDevice::isAvailable()) return printLeftOut("All rows", "attaching loop devices needs root");
    const LoopDevice loop = attach(workshop.makeMedium("medium", 4352 * MiB));
    const auto& device = loop.path();
    const auto large = workshop.makeImage("large.img", 1024 * MiB);
    compare({"1 GiB / sha256sum, dd, cmp", large, device, typedCommands(large, device), 0.4});
    compareWithImageInMemory(device);
    compare({"1 GiB on the card's disk / the same", large, device, bareCopy(large, device), std::nullopt, 5});
    const auto huge = workshop.makeImage("huge.img", 4352 * MiB);
    compare({"4.25 GiB / bare direct dd, flushed", huge, device, bareCopy(huge, device), 1.2, 1});
    fs::remove(huge);

    if (!BlockThrottle::isAvailable())
        return printLeftOut("At a card's speed", "the block-I/O controller is not available");
    compareAtSpeed(workshop, device, 90, 256 * MiB, 1.02);
    compareAtSpeed(workshop, device, 20, 128 * MiB, 1.01);
}

/// Returns the processor time in seconds of this process, or of the children that it has waited for.
double processorTime(int whose) {
    rusage usage{};
    getrusage(whose, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

/// Compares processor time. Both contenders digest the image three times: as it is written, as it is read
/// again, and as the card holds it.
void compareProcessorTime(const Workshop& workshop) {
    printHeader("Processor time of a verified write of 1 GiB");
    if (!LoopDevice::isAvailable()) return printLeftOut("All rows", "attaching loop devices needs root");
    const LoopDevice loop = attach(workshop.path("medium"));
    const auto image = workshop.path("large.img");
    const auto digest = "sha256sum " + image.string();
    const auto digests = joined({digest, digest, digest, bareCopy(image, loop.path())}, " && ");
    double ours = 1e9;
    double theirs = 1e9;
    for (int round = 0; round < 3; ++round) {
        const auto ownBefore = processorTime(RUSAGE_SELF);
        transfer(image, loop.path());
        ours = std::min(ours, processorTime(RUSAGE_SELF) - ownBefore);
        const auto othersBefore = processorTime(RUSAGE_CHILDREN);
        shell(digests);
        theirs = std::min(theirs, processorTime(RUSAGE_CHILDREN) - othersBefore);
    }
    printRow({"transfer / sha256sum three times and dd", ours, theirs, "s", 1.15});
}

/// Returns this process's peak resident size in MiB. The figure from getrusage would include the process that
/// started this one.
double peakResidentSize() {
    std::ifstream status("/proc/self/status");
    for (std::string name; status >> name;) {
        double kibibytes = 0;
        if (name == "VmHWM:" && status >> kibibytes) return kibibytes / 1024;
    }
    throw std::runtime_error("the peak resident size is not known");
}

/// Returns the peak resident size in MiB of a process that does one transfer and nothing else.
double peakOfTransfer(const fs::path& program, const fs::path& image, const fs::path& device) {
    CollectingPipe output;
    Process process({.executable = program,
                     .arguments = {"--transfer", image.string(), device.string()},
                     .environment = {}},
                    {.standardOutput = output.writingEnd(), .standardError = STDERR_FILENO});
    Process::Stream streams[] = {output.stream()};
    // A transfer that fails prints no number, and the conversion below then throws.
    static_cast<void>(process.waitUntilExit({.streams = streams, .timeout = std::nullopt}));
    return std::stod(output.collected());
}

void compareMemory(const Workshop& workshop, const fs::path& program) {
    printHeader("Peak resident size of a transfer");
    if (!LoopDevice::isAvailable()) {
        printLeftOut("All rows", "attaching loop devices needs root");
        return;
    }
    const LoopDevice device = attach(workshop.path("medium"));
    for (const auto& image : {workshop.makeImage("small.img", 128 * MiB), workshop.path("large.img")}) {
        const auto title = std::to_string(fs::file_size(image) / MiB) + " MiB image / 64 MiB";
        printRow({title, peakOfTransfer(program, image, device.path()), 64, "MiB", 1.0});
    }
}

void compareScan(const Workshop& workshop, const fs::path& programs) {
    printHeader("Scanning 64 disks");
    SimulatedReader reader(workshop.path("reader"), programs);
    std::vector<std::string> commands{"list -plist"};
    for (int number = 1; number <= 64; ++number) {
        const auto identifier = "disk" + std::to_string(number);
        reader.addDisk({.identifier = identifier,
                        .mediaName = "SD Card Reader",
                        .sizeBytes = 1024 * MiB,
                        .medium = SimulatedDisk::Medium::none});
        commands.push_back("info -plist /dev/" + identifier);
    }
    const auto diskutil = reader.utilities().diskUtility.string();
    std::string script;
    for (const auto& command : commands)
        script.append(diskutil).append(" ").append(command).append("\n");
    std::ofstream(workshop.path("scan.sh")) << script;

    double ours = 1e9;
    double theirs = 1e9;
    for (int scan = 0; scan < scans; ++scan) {
        ours = std::min(ours, secondsOf([&] {
                            const DiskService service(reader.utilities().diskUtility);
                            const auto disks =
                                runUntilFinished(std::make_shared<RunLoop>(), service.scanDisks());
                            if (disks.size() != 64) throw std::runtime_error("a disk is missing");
                        }));
        theirs = std::min(theirs, secondsOf([&] { shell("sh " + workshop.path("scan.sh").string()); }));
    }
    printRow({"scan / the same 65 commands in a shell script", ours, theirs, "s", std::nullopt});
}

}  // namespace

}  // namespace tessel::benchmark

int main(int argc, char* argv[]) {
    using namespace tessel::benchmark;
    if (argc == 4 && std::string(argv[1]) == "--transfer") {
        transfer(argv[2], argv[3]);
        std::printf("%.1f\n", peakResidentSize());
        return 0;
    }
    const auto program = fs::read_symlink("/proc/self/exe");
    const Workshop workshop("/var/tmp");  // on a disk, since memory is much faster than a card
    compareTransfers(workshop);
    compareProcessorTime(workshop);
    compareMemory(workshop, program);
    compareScan(workshop, TESSEL_SIMULATED_PROGRAMS);
}
