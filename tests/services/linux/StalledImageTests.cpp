#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <thread>

#include "foundation/Errors.h"
#include "model/TesselError.h"
#include "services/ImageTransfer.h"
#include "tests/support/OpenResources.h"
#include "tests/support/ScriptedDevice.h"
#include "tests/support/TemporaryFolder.h"

namespace tessel {

namespace {

using namespace std::chrono_literals;

constexpr size_t chunk = 8 * 1024 * 1024;
constexpr size_t imageSize = 4 * chunk;

/// An image on a mount that answers up to an offset and then never again.
class StalledImageTests : public testing::Test {
  protected:
    void SetUp() override {
        if (geteuid() != 0 || access("/dev/fuse", R_OK | W_OK) != 0) GTEST_SKIP() << "needs FUSE";
    }

    void mountImage(uint64_t stallsFrom) {
        server = fork();
        if (server == 0) {
            execl(TESSEL_STALLING_FILE_SYSTEM, TESSEL_STALLING_FILE_SYSTEM, folder.path().c_str(),
                  std::to_string(imageSize).c_str(), std::to_string(stallsFrom).c_str(), nullptr);
            _exit(1);
        }
        waitUntil([this] { return std::filesystem::exists(imageURL); });
    }

    void TearDown() override {
        if (server > 0) unmount();
    }

    /// From now on nothing is answered beyond the offset.
    void stall() const { kill(server, SIGUSR1); }

    void mountAgain() {
        unmount();
        mountImage(chunk);
    }

    void unmount() {
        // Ends the stuck read, and with it the thread that was left behind.
        kill(server, SIGKILL);
        waitpid(server, nullptr, 0);
        umount2(folder.path().c_str(), MNT_DETACH);
        EXPECT_EQ(settledDescriptors(before), before);
        stop = {};
    }

    static void waitUntil(const std::function<bool()>& condition) {
        for (int attempt = 0; attempt < 1000 && !condition(); ++attempt)
            std::this_thread::sleep_for(10ms);
        EXPECT_TRUE(condition());
    }

    /// What the transfer throws, which it must do while the read is stuck.
    std::string failure() {
        const AuthorizedRawDiskHandle handle{.device = std::make_unique<ScriptedDevice>(script),
                                             .blockSize = script.blockSize,
                                             .blockCount = imageSize / script.blockSize};
        try {
            writeImage({imageURL, imageSize, handle, true}, stop.get_token(), onReport);
            return "";
        } catch (const std::exception&) {
            return localizedDescription(std::current_exception());
        }
    }

    std::vector<std::string> before = openDescriptors();
    TemporaryFolder folder;
    std::filesystem::path imageURL = folder.path() / "os.img";
    DeviceScript script{.medium = std::vector<std::byte>(imageSize)};
    std::stop_source stop;
    std::function<void(const ImageWriteProgress&)> onReport = [](const ImageWriteProgress&) {};
    pid_t server = 0;
};

}  // namespace

TEST_F(StalledImageTests, nothingIsReadBeforeTheFirstReport) {
    mountImage(0);
    stall();
    onReport = [this](const ImageWriteProgress&) { stop.request_stop(); };
    EXPECT_EQ(failure(), CancellationError().what());
}

TEST_F(StalledImageTests, aStopDoesNotWaitForAReadAhead) {
    mountImage(chunk);
    for (const auto phase : {ImageWritePhase::writingImage, ImageWritePhase::verifyingImage}) {
        onReport = [this, phase](const ImageWriteProgress& report) {
            if (report.phase != phase) return;
            if (report.completedBytes == 0) stall();
            if (report.completedBytes == chunk) stop.request_stop();
        };
        EXPECT_EQ(failure(), CancellationError().what());
        mountAgain();
    }
}

TEST_F(StalledImageTests, aFailingCardDoesNotWaitForAReadAhead) {
    mountImage(chunk);
    stall();
    script.onWrite = [](auto, uint64_t) { return SystemResult{.error = EIO}; };
    EXPECT_EQ(failure(), "The SD-card write did not complete at byte offset 0: Input/output error");
    mountAgain();

    script.onWrite = nullptr;
    script.onRead = [](auto, uint64_t) { return SystemResult{.error = EIO}; };
    onReport = [this](const ImageWriteProgress& report) {
        if (report.phase == ImageWritePhase::verifyingImage) stall();
    };
    EXPECT_EQ(failure(),
              "The SD card could not be read for verification at byte offset 0: Input/output error");
}

}  // namespace tessel
