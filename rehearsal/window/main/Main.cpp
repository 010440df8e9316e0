/// Shows the window on a simulated card reader. On a display the user operates it; without one, a scripted
/// user does so off screen.

#include <QApplication>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <span>

#include "model/TesselError.h"
#include "platform/qt/QtMainThread.h"
#include "rehearsal/FileDevice.h"
#include "rehearsal/FileDigest.h"
#include "rehearsal/PacedDevice.h"
#include "rehearsal/Stage.h"
#include "rehearsal/StandardMachine.h"
#include "rehearsal/window/Commentary.h"
#include "rehearsal/window/Pictures.h"
#include "rehearsal/window/ReaderWatch.h"
#include "rehearsal/window/ScriptedUser.h"

namespace tessel {

namespace {

constexpr double cardSpeed = 90'000'000;  ///< in bytes per second

std::unique_ptr<RawDevice> makeRehearsedCard(FileDescriptor descriptor) {
    return makePacedDevice(makeRehearsalDevice(std::move(descriptor)), cardSpeed);
}

void compareIndependently(const std::filesystem::path& image, const std::filesystem::path& medium) {
    const auto size = std::filesystem::file_size(image);
    std::printf("\nCompared independently, by reading both again from the beginning (SHA-256)\n");
    std::fflush(stdout);
    const auto imageDigest = digestOf(image, size);
    const auto mediumDigest = digestOf(medium, size);
    std::printf("  image  %s\n  card   %s\n", imageDigest.c_str(), mediumDigest.c_str());
    if (imageDigest != mediumDigest) throw std::runtime_error("The card does not hold the image.");
    std::printf("The card holds the image, was verified and ejected.\n");
}

Task<> play(VelmoraTesselApp& application, Stage& stage, std::filesystem::path image,
            std::optional<int>& status) {
    try {
        const std::filesystem::path folder = "pictures";
        const Pictures pictures(application.window(), folder);
        const auto medium = stage.reader().mediumPath(usbReaderCard);
        Commentary commentary(application.viewModel());
        ScriptedUser user(application, {.watch = [&](const QString& name) { pictures.take(name); },
                                        .listen = [&] { commentary.tell(); }});
        co_await user.writeSuggestedImage(usbReaderCard);
        compareIndependently(image, medium);
        std::printf("Pictures of each stage are in %s/.\n", folder.c_str());
        status = EXIT_SUCCESS;
    } catch (const std::exception&) {
        std::fprintf(stderr, "Error: %s\n", localizedDescription(std::current_exception()).c_str());
        status = EXIT_FAILURE;
    }
    application.window().closeWhenWriteEnds();
}

/// Returns the image that the user named, or else a sample.
std::filesystem::path imageToTry(const Stage& stage, std::span<char* const> arguments) {
    if (arguments.empty()) return stage.makeSampleImage();
    const std::filesystem::path image = arguments.front();
    if (!std::filesystem::is_regular_file(image))
        throw std::runtime_error("“" + image.string() + "” is not a file.");
    return std::filesystem::canonical(image);
}

int rehearse(std::span<char* const> arguments) {
    Stage stage;
    const auto image = imageToTry(stage, arguments);
    const auto readerFolder = stage.reader().path();
    VelmoraTesselApp application(
        {.utilities = stage.reader().utilities(),
         .makeDevice = makeRehearsedCard,
         .watch = [&](auto onChange) { return watchReader(readerFolder, std::move(onChange)); }});
    application.desktop().setSuggestedFile(image);
    if (isDisplayNamed()) {
        std::printf("Nothing real is touched. The image to try: %s\n", image.c_str());
        std::printf("A card is out of the reader while its folder holds a file \"ejected\": %s\n",
                    (readerFolder / usbReaderCard).c_str());
        std::fflush(stdout);
        return application.run();
    }
    application.window().fitInto({Pictures::largeScreen});
    std::optional<int> status;
    auto performance = startTask(application.mainThread(), play(application, stage, image, status));
    application.run();
    performance.cancel();
    handleEventsUntil([&status] { return status.has_value(); });
    return status.value_or(EXIT_FAILURE);
}

}  // namespace

}  // namespace tessel

int main(int argc, char* argv[]) {
    if (!tessel::isDisplayNamed()) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qputenv("QT_LOGGING_RULES", "default.warning=false");  // these concern real screens only
    }
    const auto qtApplication = tessel::connectToDisplay(argc, argv);
    tessel::prepareApplication();
    const auto look = tessel::isDisplayNamed() ? tessel::followDesktopLook() : nullptr;
    try {
        return tessel::rehearse(std::span(argv + 1, argv + argc));
    } catch (const std::exception&) {
        std::fprintf(stderr, "Error: %s\n", tessel::localizedDescription(std::current_exception()).c_str());
        return EXIT_FAILURE;
    }
}
