#include "services/ImageWriterService.h"

#include <gmock/gmock.h>

#include <thread>

#include "foundation/Errors.h"
#include "foundation/SystemWords.h"
#include "platform/RunLoop.h"
#include "rehearsal/FileDevice.h"
#include "rehearsal/SimulatedReader.h"
#include "tests/support/CommandNames.h"
#include "tests/support/FaultyDevice.h"
#include "tests/support/OpenResources.h"
#include "tests/support/TemporaryFolder.h"

namespace tessel {

namespace {

using enum ImageWritePhase;

constexpr uint64_t cardSize = 600'000'000 / 512 * 512;
constexpr uint64_t imageSize = 20'000'001;

constexpr auto cancelled = "The operation was cancelled.";
constexpr auto diskChanged =
    "The selected disk changed after it was scanned. Refresh the disk list and select it again.";
constexpr auto imageChanged = "The selected image changed after it was selected.";

class ImageWriterServiceTests : public testing::Test {
  protected:
    ImageWriterServiceTests() {
        reader.addDisk({.identifier = "disk4", .mediaName = "SD Card Reader", .sizeBytes = cardSize});
        std::string bytes(imageSize, 'x');
        for (size_t i = 0; i < bytes.size(); i += 997)
            bytes[i] = static_cast<char>(i);
        request = {.image = {.url = folder.write("os.img", bytes), .sizeBytes = imageSize},
                   .target = runUntilFinished(loop, DiskService(reader.utilities()).scanDisks()).front()};
        callsBefore = reader.calls().size();
    }

    /// Runs the write to its end and gives the sentence of its error, or "".
    std::string write() {
        const auto before = openDescriptors();
        const ImageWriterService service(loop, reader.utilities(), makeDevice);
        const auto report = [&, main = std::this_thread::get_id()](const ImageWriteProgress& progress) {
            EXPECT_EQ(std::this_thread::get_id(), main);
            if (phases.empty() || phases.back() != progress.phase) phases.push_back(progress.phase);
            if (onReport) onReport(progress);
        };
        std::string failure;
        try {
            stop = {};
            runUntilFinished(loop, service.write(request, report), stop);
        } catch (...) {
            failure = localizedDescription(std::current_exception());
        }
        EXPECT_EQ(settledDescriptors(before), before);
        return failure;
    }

    std::string commands() const { return commandNames(reader.calls(), callsBefore); }

    TemporaryFolder folder;
    SimulatedReader reader{folder.path() / "reader", TESSEL_SIMULATED_PROGRAMS};
    ImageWriterService::Write request;
    RawDeviceFactory makeDevice = makeRehearsalDevice;
    std::vector<ImageWritePhase> phases;
    std::function<void(const ImageWriteProgress&)> onReport;
    std::stop_source stop;
    size_t callsBefore = 0;

  private:
    std::shared_ptr<RunLoop> loop = std::make_shared<RunLoop>();
};

}  // namespace

TEST_F(ImageWriterServiceTests, everyFailureEjectsExactlyWhereItMust) {
    const auto resizeImage = [this](uint64_t size) { std::filesystem::resize_file(request.image.url, size); };
    const auto whenAuthorizing = [this](std::function<void()> act) {
        onReport = [act = std::move(act)](const ImageWriteProgress& report) {
            if (report.phase == authorizingDevice) act();
        };
    };
    const struct {
        const char* what;
        std::function<void()> arrange;
        std::string error;
        std::string commands;
    } cases[] = {
        {"a protected target", [this] { request.target.isWritable = false; },
         "The selected disk is protected: " + systemWords().cardNotWritable, ""},
        {"no image", [this] { std::filesystem::remove(request.image.url); },
         "The authorized image write failed: The file “" + request.image.url.string() +
             "” could not be inspected: No such file or directory.",
         ""},
        {"a folder as the image", [this] { request.image.url = folder.path(); },
         "The selected image file is unavailable.", ""},
        {"an image of another size", [&] { resizeImage(imageSize - 1); }, imageChanged, ""},
        {"an empty image", [&] { resizeImage(request.image.sizeBytes = 0); }, imageChanged, ""},
        {"a card that is too small", [&] { resizeImage(request.image.sizeBytes = cardSize + 1); },
         "The selected image is larger than the selected SD card.", "list info"},
        {"a card exchanged during the prompt",
         [this] { reader.setBehaviour("disk4", {.exchangedDuringPrompt = {{"TotalSize", cardSize + 512}}}); },
         diskChanged, "list info unmount authorize list info list info list info eject"},
        {"a device that is not as large as the card",
         [this] {
             reader.changeDetails("disk4", {{"TotalSize", cardSize + 512}});
             request.target.sizeBytes += 512;
         },
         diskChanged, "list info unmount authorize list info eject"},
        {"an image that grows during the prompt",
         [&] { whenAuthorizing([&] { resizeImage(imageSize + 1); }); }, imageChanged,
         "list info unmount authorize list info eject"},
    };
    const auto original = request;
    const auto content = contentOf(request.image.url);
    for (const auto& [what, arrange, error, expectedCommands] : cases) {
        SCOPED_TRACE(what);
        request = original;
        folder.write("os.img", content);
        phases.clear();
        onReport = nullptr;
        makeDevice = makeRehearsalDevice;
        reader.reinsert("disk4");
        reader.setBehaviour("disk4", {});
        reader.changeDetails("disk4", {{"TotalSize", cardSize}, {"WritableMedia", true}});
        callsBefore = reader.calls().size();

        arrange();
        EXPECT_EQ(write(), error);
        EXPECT_THAT(phases, testing::Not(testing::Contains(completed)));
        EXPECT_EQ(commands(), expectedCommands);
    }
}

TEST_F(ImageWriterServiceTests, aStopComesBeforeEveryOtherReasonToEnd) {
    request.target.isWritable = false;
    const ImageWriterService service(std::make_shared<RunLoop>(), reader.utilities(), makeDevice);
    stop.request_stop();
    EXPECT_THROW(
        runUntilFinished(std::make_shared<RunLoop>(), service.write(request, [](const auto&) {}), stop),
        CancellationError);
}

TEST_F(ImageWriterServiceTests, theCardIsClosedBeforeItIsEjectedAndOffTheMainThread) {
    class Witness : public WrappedDevice {
      public:
        Witness(std::unique_ptr<RawDevice> device, std::function<void()> onClose) :
            WrappedDevice(std::move(device)),
            onClose(std::move(onClose)) {}
        ~Witness() override { onClose(); }

      private:
        std::function<void()> onClose;
    };
    int closed = 0;
    const auto noteClosing = [&, main = std::this_thread::get_id()] {
        ++closed;
        EXPECT_NE(std::this_thread::get_id(), main);
        EXPECT_EQ(commands(), "list info unmount authorize list info");
    };
    makeDevice = [&](FileDescriptor descriptor) -> std::unique_ptr<RawDevice> {
        return std::make_unique<Witness>(makeRehearsalDevice(std::move(descriptor)), noteClosing);
    };
    EXPECT_EQ(write(), "");
    EXPECT_EQ(commands(), "list info unmount authorize list info eject");

    reader.reinsert("disk4");
    callsBefore = reader.calls().size();
    onReport = [this](const ImageWriteProgress& report) {
        if (report.phase == writingImage) stop.request_stop();
    };
    EXPECT_EQ(write(), cancelled);
    EXPECT_EQ(commands(), "list info unmount authorize list info eject");
    EXPECT_EQ(closed, 2);
}

TEST_F(ImageWriterServiceTests, aStopWaitsForAnOpenPrompt) {
    reader.setBehaviour("disk4", {.delays = {{"authopen", 0.3}}});
    std::thread stopper;
    onReport = [&](const ImageWriteProgress& report) {
        if (report.phase != authorizingDevice) return;
        stopper = std::thread([this] {
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
            stop.request_stop();
        });
    };
    EXPECT_EQ(write(), cancelled);
    stopper.join();
    EXPECT_EQ(commands(), "list info unmount authorize eject")
        << "the card is neither checked again nor written";
}

}  // namespace tessel
