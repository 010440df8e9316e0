/// Plays a whole write in the terminal, on a simulated card reader: from the list of disks to the ejected
/// card.

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "model/SDCardPolicy.h"
#include "model/TesselError.h"
#include "platform/ByteCount.h"
#include "platform/Sha256.h"
#include "platform/concurrency/TaskHandle.h"
#include "rehearsal/StandardMachine.h"
#include "services/DiskService.h"
#include "services/ImageWriterService.h"

namespace tessel {

namespace {

namespace fs = std::filesystem;

/// A folder for this run, gone at the end.
class Stage {
  public:
    Stage() {
        auto name = (fs::temp_directory_path() / "velmora-tessel-XXXXXX").string();
        if (!mkdtemp(name.data())) throw std::runtime_error("No folder could be made for the rehearsal.");
        folder = name;
    }
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;
    ~Stage() { fs::remove_all(folder); }

    /// 100 MB and one byte, so that the last block is not full.
    fs::path sampleImage() const {
        constexpr size_t size = 100'000'001;
        const auto path = folder / "sample.img";
        std::ofstream image(path, std::ios::binary);
        std::string bytes;
        for (uint32_t state = 1; bytes.size() < size;) {
            state = state * 1664525 + 1013904223;
            bytes += static_cast<char>(state >> 24);
        }
        image << bytes;
        return path;
    }

    fs::path folder;
};

const char* title(ImageWritePhase phase) {
    static constexpr const char* titles[] = {"Unmounting", "Authorizing", "Writing", "Synchronizing",
                                             "Verifying",  "Ejecting",    "Done"};
    return titles[static_cast<size_t>(phase)];
}

/// Redraws the line of a phase in a terminal; elsewhere prints each phase once, when it is over.
Task<> showProgress(ImageWriteProgress progress) {
    const bool isOver = progress.completedBytes == progress.totalBytes || progress.completedBytes == 0;
    const bool isTransfer =
        progress.phase == ImageWritePhase::writingImage || progress.phase == ImageWritePhase::verifyingImage;
    if (isTransfer && !isatty(STDOUT_FILENO) && progress.completedBytes != progress.totalBytes) co_return;
    std::printf("\r  %-14s", title(progress.phase));
    if (isTransfer) {
        std::printf("%4.0f %%  %s of %s", 100 * progress.fractionCompleted(),
                    byteCountText(progress.completedBytes).c_str(),
                    byteCountText(progress.totalBytes).c_str());
    }
    std::printf("%s", isTransfer && (!isOver || progress.completedBytes == 0) ? "   " : "   \n");
    std::fflush(stdout);
}

/// Reads the beginning of a file in the plainest way there is, to check the write path from outside.
std::string digestOf(const fs::path& path, uint64_t length) {
    std::ifstream file(path, std::ios::binary);
    std::vector<char> buffer(1 << 20);
    Sha256 digest;
    while (length > 0) {
        const auto wanted = std::min<uint64_t>(length, buffer.size());
        if (!file.read(buffer.data(), static_cast<std::streamsize>(wanted))) return "unreadable";
        digest.update(std::as_bytes(std::span(buffer).first(wanted)));
        length -= wanted;
    }
    return hexadecimal(digest.finish());
}

void printDisks(const std::vector<SDWholeDisk>& disks) {
    std::printf("\nDisks\n");
    for (const auto& disk : disks) {
        const auto reason = eligibilityFailureReason(disk);
        std::printf("  %s %s\n      %s\n", reason ? "–" : "✓", disk.displaySummary().c_str(),
                    reason ? reason->c_str() : "May be written to.");
    }
}

Task<> play(MainThread mainThread, SimulatedReader& reader, fs::path image) {
    const auto disks = co_await DiskService(reader.utilities()).scanDisks();
    printDisks(disks);

    const SDImageFile imageFile{.url = image, .sizeBytes = fs::file_size(image)};
    const auto& card = disks.front();
    const auto medium = reader.mediumPath(card.id);
    std::printf("\nWriting %s (%s) to %s\n", image.filename().c_str(),
                byteCountText(imageFile.sizeBytes).c_str(), card.displaySummary().c_str());
    const ImageWriterService writer(mainThread, reader.utilities(), makeRehearsalDevice);
    co_await writer.write({.image = imageFile, .target = card, .verify = true}, showProgress);

    const auto imageDigest = digestOf(image, imageFile.sizeBytes);
    const auto mediumDigest = digestOf(medium, imageFile.sizeBytes);
    std::printf("\nCompared independently, by reading both again from the beginning (SHA-256)\n");
    std::printf("  image  %s\n  card   %s\n", imageDigest.c_str(), mediumDigest.c_str());
    if (imageDigest != mediumDigest) throw std::runtime_error("The card does not hold the image.");
    std::printf("\nThe card holds the image, was verified and ejected.\n");
}

}  // namespace

}  // namespace tessel

int main(int argc, char* argv[]) {
    using namespace tessel;
    try {
        const Stage stage;
        SimulatedReader reader(stage.folder / "reader", TESSEL_SIMULATED_PROGRAMS);
        addStandardMachine(reader);
        const auto image = argc > 1 ? fs::canonical(argv[1]) : stage.sampleImage();
        const auto loop = std::make_shared<RunLoop>();
        runUntilFinished(loop, play(loop, reader, image));
        return EXIT_SUCCESS;
    } catch (const std::exception&) {
        std::fprintf(stderr, "\nError: %s\n", localizedDescription(std::current_exception()).c_str());
        return EXIT_FAILURE;
    }
}
