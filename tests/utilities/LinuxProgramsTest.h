#pragma once

#include <gmock/gmock.h>
#include <sched.h>
#include <signal.h>
#include <spawn.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <optional>
#include <sstream>
#include <thread>

#include "platform/BlockDevice.h"
#include "platform/concurrency/Task.h"
#include "platform/linux/BlockDescriptor.h"
#include "services/AuthorizedRawDisk.h"
#include "services/DiskPropertyLists.h"
#include "services/ImageTransfer.h"
#include "tests/support/LoopDeviceTest.h"
#include "tests/support/MemoryDevice.h"
#include "tests/support/UtilityRun.h"

namespace tessel {

/// A program that runs until this object is destroyed.
class Companion {
  public:
    explicit Companion(std::vector<std::string> command) {
        std::vector<char*> words;
        for (std::string& word : command)
            words.push_back(word.data());
        words.push_back(nullptr);
        posix_spawnp(&identifier, words.front(), nullptr, nullptr, words.data(), environ);
    }
    Companion(const Companion&) = delete;
    Companion& operator=(const Companion&) = delete;
    ~Companion() {
        kill(identifier, SIGKILL);
        waitpid(identifier, nullptr, 0);
    }

    void pause() const { kill(identifier, SIGSTOP); }
    void resume() const { kill(identifier, SIGCONT); }
    /// Returns its folder in /proc.
    std::filesystem::path folder() const { return "/proc/" + std::to_string(identifier); }

  private:
    pid_t identifier = 0;
};

inline bool appears(const std::filesystem::path& path) {
    for (int attempt = 0; attempt < 500 && !std::filesystem::exists(path); ++attempt)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    return std::filesystem::exists(path);
}

/// Runs the real programs on this machine's kernel, with a bus of their own and a stand-in for UDisks2 that
/// describes one disk: a loop device.
class LinuxProgramsTest : public LoopDeviceTest {
  protected:
    void SetUp() override {
        LoopDeviceTest::SetUp();
        if (IsSkipped()) return;
        if (unshare(CLONE_NEWNS) != 0 || ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
            GTEST_SKIP() << "needs mounts of its own";
        loop.emplace(LoopDevice::Options{.file = mediumFile("medium", mediumSizeInBytes)});
        number = diskSequenceNumber(openReadWrite(loop->path()).get()).value;
        identifier = "disk" + std::to_string(number);
        makeRemovable(*loop);

        // The private bus has no services yet.
        const auto socket = folder.path() / "bus";
        const auto configuration = folder.write(
            "bus.conf",
            "<busconfig><type>session</type><listen>unix:path=" + socket.string() +
                "</listen><policy context='default'><allow send_destination='*' eavesdrop='true'/>"
                "<allow eavesdrop='true'/><allow own='*'/></policy></busconfig>");
        setenv("DBUS_SYSTEM_BUS_ADDRESS", ("unix:path=" + socket.string()).c_str(), 1);
        // A thread sanitizer in the programs can't see the locks of the bus library.
        setenv("TSAN_OPTIONS", "ignore_noninstrumented_modules=1", 0);
        // The bus is silenced, since it would warn that it may not raise its limits.
        bus.emplace(std::vector<std::string>{"sh", "-c",
                                             "exec dbus-daemon --nofork --nopidfile --config-file=" +
                                                 configuration.string() + " 2>/dev/null"});
        if (!appears(socket)) GTEST_SKIP() << "needs dbus-daemon";
        startUDisks();
        // Where "/" lies on no disk, as in most containers, nothing may be opened.
        struct stat root{};
        ASSERT_EQ(stat("/", &root), 0);
        const auto disk = std::to_string(major(root.st_dev)) + ":" + std::to_string(minor(root.st_dev));
        if (!std::filesystem::exists("/sys/dev/block/" + disk)) GTEST_SKIP() << "needs a disk below \"/\"";
    }

    void TearDown() override {
        for (const auto& flag : coveredFlags)
            umount2(flag.c_str(), MNT_DETACH);
    }

    /// Makes the kernel report the medium as removable, like one in a card reader.
    void makeRemovable(const LoopDevice& device) {
        const auto yes = folder.write("yes", "1\n");
        const auto flag = "/sys/block" / device.path().filename() / "removable";
        ASSERT_EQ(::mount(yes.c_str(), flag.c_str(), nullptr, MS_BIND, nullptr), 0);
        coveredFlags.push_back(flag);
    }

    void startUDisks(const std::string& moreKeys = "", const std::optional<std::string>& knownNumber = {}) {
        udisks.reset();
        std::filesystem::remove(folder.path() / "calls");
        const auto description =
            folder.write("disks", "[" + loop->path().filename().string() +
                                      "]\nvendor=Generic\nmodel=SD Card\nfile system=ext4\nsequence number=" +
                                      knownNumber.value_or(std::to_string(number)) + "\n" + moreKeys);
        udisks.emplace(std::vector<std::string>{TESSEL_STAND_IN_UDISKS, description.string(),
                                                (folder.path() / "calls").string()});
        ASSERT_TRUE(appears(folder.path() / "calls"));
    }

    UtilityRun diskutil(std::vector<std::string> arguments) const {
        return UtilityRun::ofDiskUtility(
            {.executable = programs / "diskutil", .arguments = std::move(arguments)});
    }
    UtilityRun unmount() const { return diskutil({"unmountDisk", "force", "/dev/" + identifier}); }
    UtilityRun eject() const { return diskutil({"eject", "/dev/" + identifier}); }
    UtilityRun authopen() const {
        return UtilityRun::ofAuthorizationUtility(
            {.executable = programs / "authopen",
             .arguments = {"-stdoutpipe", "-o", "2", "/dev/r" + identifier}});
    }

    /// Opens the disk and writes an image of that many bytes onto it, as the program does once its policy has
    /// agreed. Calls the hook with each report. Returns the text of the error, or nothing if there is none.
    std::string write(size_t size, const ImageWriteProgressHandler& onReport) const {
        const auto image = patternedBytes(size);
        const auto file = folder.write("os.img", {reinterpret_cast<const char*>(image.data()), image.size()});
        const auto handle = RawDiskOpener(programs / "authopen", makeBlockDevice)
                                .openAuthorizedRawDisk("/dev/r" + identifier);
        try {
            writeImage({file, size, handle, true}, {}, onReport);
            return "";
        } catch (const std::exception&) {
            return localizedDescription(std::current_exception());
        }
    }
    bool holdsImage() const {
        const auto image = contentOf(folder.path() / "os.img");
        return contentOf(folder.path() / "medium").starts_with(image);
    }

    std::vector<std::string> calls() const {
        std::vector<std::string> lines;
        std::istringstream text(contentOf(folder.path() / "calls"));
        for (std::string line; std::getline(text, line);)
            lines.push_back(line);
        return lines;
    }
    SDWholeDisk info() const {
        const UtilityRun run = diskutil({"info", "-plist", "/dev/" + identifier});
        if (run.status != 0) return {};
        return parseDiskInfo(run.output, identifier, nullptr).value();
    }

    static constexpr uint64_t mediumSizeInBytes = 64 << 20;

    const std::filesystem::path programs = TESSEL_LINUX_PROGRAMS;
    std::vector<std::filesystem::path> coveredFlags;
    std::optional<LoopDevice> loop;
    uint64_t number = 0;
    std::string identifier;
    std::optional<Companion> bus;
    std::optional<Companion> udisks;
};

/// Makes a file system on the disk, whose mounts are visible only to this process and its children.
class MountedDiskTest : public LinuxProgramsTest {
  protected:
    void SetUp() override {
        LinuxProgramsTest::SetUp();
        if (IsSkipped()) return;
        const auto format = "mke2fs -q -F " + loop->path().string();
        if (std::system(format.c_str()) != 0) GTEST_SKIP() << "needs mke2fs";
        for (const char* place : {"/media", "/run"})
            ASSERT_EQ(::mount("tmpfs", place, "tmpfs", 0, nullptr), 0);
    }
    void TearDown() override {
        udisks.reset();
        umount2(mountPoint, MNT_DETACH);
        for (const char* place : {"/run", "/media"})
            umount2(place, MNT_DETACH);
        LinuxProgramsTest::TearDown();
    }

    void mount(const std::string& options) const {
        std::filesystem::create_directories(mountPoint);
        std::filesystem::create_directories("/run/mount");
        const auto command = "mount -o " + options + " " + loop->path().string() + " " + mountPoint;
        ASSERT_EQ(std::system(command.c_str()), 0);
    }
    void mountWith(const std::string& options) {
        mount(options);
        startUDisks("mounted at=" + std::string(mountPoint) + "\n");
    }
    bool isMounted() const { return contentOf("/proc/self/mountinfo").find(mountPoint) != std::string::npos; }

    static constexpr const char* mountPoint = "/media/tessel-test";
};

}  // namespace tessel
