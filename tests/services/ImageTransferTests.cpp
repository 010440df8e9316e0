#include "services/ImageTransfer.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <cstdio>

#include "foundation/Errors.h"
#include "model/TesselError.h"
#include "tests/support/OpenResources.h"
#include "tests/support/ScriptedDevice.h"
#include "tests/support/TemporaryFolder.h"

namespace tessel {

namespace {

using enum ImageWritePhase;
using testing::ElementsAre;

constexpr size_t MiB = 1024 * 1024;
constexpr size_t chunk = 8 * MiB;
constexpr std::byte untouched{0xEE};

class ImageTransferTests : public LeavesNothingOpen {
  protected:
    void useImage(size_t size, size_t cardSize = 0) {
        image = patternedBytes(size);
        script.medium.assign(cardSize == 0 ? 32 * MiB : cardSize, untouched);
        imageURL = folder.write("os.img", {reinterpret_cast<const char*>(image.data()), image.size()});
    }

    /// Runs a transfer to its end. The hook is called with each report and may stop it.
    std::exception_ptr transfer(bool verify = true) {
        const AuthorizedRawDiskHandle handle{.device = std::make_unique<ScriptedDevice>(script),
                                             .blockSize = script.blockSize,
                                             .blockCount = script.medium.size() / script.blockSize};
        stop = {};
        const auto record = [this](const ImageWriteProgress& report) {
            reports.push_back(report);
            if (onReport) onReport(report);
        };
        try {
            writeImage({imageURL, image.size(), handle, verify}, stop.get_token(), record);
            return nullptr;
        } catch (...) {
            return std::current_exception();
        }
    }

    std::string failure(bool verify = true) { return localizedDescription(transfer(verify)); }

    void expectCardHoldsImage() const {
        const auto padded = (image.size() + script.blockSize - 1) / script.blockSize * script.blockSize;
        const std::span medium(script.medium);
        const auto isFilledWith = [](std::byte value) {
            return [value](std::byte byte) { return byte == value; };
        };
        EXPECT_TRUE(std::ranges::equal(image, medium.first(image.size())));
        EXPECT_TRUE(
            std::ranges::all_of(medium.first(padded).subspan(image.size()), isFilledWith(std::byte{0})));
        EXPECT_TRUE(std::ranges::all_of(medium.subspan(padded), isFilledWith(untouched)));
    }

    void patchImageFile(long offset, std::string_view bytes) const {
        std::FILE* file = std::fopen(imageURL.c_str(), "r+b");
        std::fseek(file, offset, SEEK_SET);
        std::fwrite(bytes.data(), 1, bytes.size(), file);
        std::fclose(file);
    }

    TemporaryFolder folder;
    std::filesystem::path imageURL;
    std::vector<std::byte> image;
    DeviceScript script;
    std::vector<ImageWriteProgress> reports;
    std::function<void(const ImageWriteProgress&)> onReport;
    std::stop_source stop;
};

}  // namespace

TEST_F(ImageTransferTests, writesAndVerifiesImagesOfEverySize) {
    const struct {
        size_t imageSize;
        uint64_t blockSize;
        size_t cardSize;
    } cases[] = {
        {1, 512, MiB},
        {1000, 512, MiB},
        {4096, 4096, MiB},
        {chunk, 512, 2 * chunk},
        {chunk + 1, 4096, 2 * chunk},
        {chunk - 1, 512, chunk},
        {2 * chunk, 512, 2 * chunk},
        {3, MiB, 2 * MiB},
    };
    for (const auto& [imageSize, blockSize, cardSize] : cases) {
        SCOPED_TRACE(imageSize);
        script = {.blockSize = blockSize};
        reports.clear();
        useImage(imageSize, cardSize);

        ASSERT_EQ(transfer(), nullptr);
        expectCardHoldsImage();
        EXPECT_EQ(script.synchronizations, 1);

        std::vector<ImageWriteProgress> expected;
        std::vector<uint64_t> expectedReads;
        for (const auto phase : {writingImage, verifyingImage}) {
            for (uint64_t done = 0; done < imageSize; done += chunk)
                expected.push_back({phase, done, imageSize});
            expected.push_back({phase, imageSize, imageSize});
            if (phase == writingImage) expected.push_back({synchronizing, imageSize, imageSize});
        }
        for (uint64_t offset = 0; offset < imageSize; offset += chunk)
            expectedReads.push_back(offset);
        EXPECT_EQ(reports, expected);
        EXPECT_EQ(script.readOffsets, expectedReads);
    }
}

TEST_F(ImageTransferTests, withoutVerificationTheCardIsNotReadBack) {
    useImage(chunk + 5);
    ASSERT_EQ(transfer(false), nullptr);
    expectCardHoldsImage();
    EXPECT_TRUE(script.readOffsets.empty());
    EXPECT_EQ(reports.back().phase, synchronizing);
}

TEST_F(ImageTransferTests, refusesWhatCannotFitBeforeAnythingIsOpened) {
    useImage(0);
    EXPECT_EQ(failure(), "The selected image file is unavailable.");
    useImage(MiB + 1, MiB);
    EXPECT_EQ(failure(), "The selected image is larger than the selected SD card.");
    EXPECT_TRUE(reports.empty());
    EXPECT_EQ(script.writes, 0);
}

TEST_F(ImageTransferTests, shortAndInterruptedCallsAreContinued) {
    useImage(chunk + 5000);
    int calls = 0;
    const auto halve = [&calls](size_t size) -> SystemResult {
        if (++calls % 3 == 0) return {.error = EINTR};
        return {.value = size <= 1024 ? size : size / 1024 * 512};
    };
    script.onWrite = [&](std::span<const std::byte> bytes, uint64_t offset) {
        const auto moved = halve(bytes.size());
        std::memcpy(script.medium.data() + offset, bytes.data(), moved.value);
        return moved;
    };
    script.onRead = [&](std::span<std::byte> bytes, uint64_t offset) {
        const auto moved = halve(bytes.size());
        std::memcpy(bytes.data(), script.medium.data() + offset, moved.value);
        return moved;
    };
    ASSERT_EQ(transfer(), nullptr);
    expectCardHoldsImage();
}

TEST_F(ImageTransferTests, aFailingDeviceEndsTheTransferWhereItFails) {
    const struct {
        SystemResult answer;
        std::string writeReason;
        std::string readReason;
    } answers[] = {
        {{.error = EIO}, "Input/output error", "Input/output error"},
        {{.error = ENOSPC}, "No space left on device", "No space left on device"},
        {{.value = 0}, "The raw device accepted zero bytes.", "The raw device reached end of media."},
    };
    useImage(3 * chunk - 7);
    for (const auto& [answer, writeReason, readReason] : answers) {
        for (const uint64_t failing : {uint64_t{0}, uint64_t{chunk}, uint64_t{2 * chunk}}) {
            reports.clear();
            script.onRead = nullptr;
            script.onWrite = [&](auto, uint64_t offset) {
                return offset == failing ? std::optional(answer) : std::nullopt;
            };
            EXPECT_EQ(failure(), "The SD-card write did not complete at byte offset " +
                                     std::to_string(failing) + ": " + writeReason);
            EXPECT_EQ(reports.back(), (ImageWriteProgress{writingImage, failing, image.size()}));

            script.onRead = [&](auto, uint64_t offset) {
                return offset == failing ? std::optional(answer) : std::nullopt;
            };
            script.onWrite = nullptr;
            EXPECT_EQ(failure(), "The SD card could not be read for verification at byte offset " +
                                     std::to_string(failing) + ": " + readReason);
            EXPECT_EQ(reports.back(), (ImageWriteProgress{verifyingImage, failing, image.size()}));
        }
    }
}

TEST_F(ImageTransferTests, aFailingFlushIsAnError) {
    useImage(1000);
    int flushes = 0;
    int failingFlush = 1;
    script.onSynchronize = [&] { return SystemResult{.error = ++flushes == failingFlush ? EIO : 0}; };
    const auto expected = "The completed image could not be synchronized to the SD card: Input/output error.";
    EXPECT_EQ(failure(), expected);
    EXPECT_TRUE(script.readOffsets.empty());

    flushes = 0;
    failingFlush = 2;
    script.onRead = [](auto, auto) { return SystemResult{.value = 512}; };
    EXPECT_EQ(failure(), expected) << "the flush between two reads of a differing chunk";
    EXPECT_EQ(script.readOffsets.size(), 2U) << "one chunk of two blocks, in two short reads";
}

TEST_F(ImageTransferTests, anExchangedMediumEndsTheTransferBeforeItIsTouched) {
    struct Touched {
        int writes;
        size_t reads;
    };
    // Two chunks written, the end of writing, two chunks read, the end of verifying.
    constexpr Touched touchedBefore[] = {{0, 0}, {1, 0}, {2, 0}, {2, 0}, {2, 1}, {2, 2}};
    useImage(2 * chunk);
    for (size_t question = 0; question < std::size(touchedBefore); ++question) {
        SCOPED_TRACE(question);
        size_t asked = 0;
        script.writes = 0;
        script.readOffsets.clear();
        script.onConfirmSameMedium = [&] {
            return SystemResult{.error = asked++ == question ? ENOMEDIUM : 0};
        };
        EXPECT_EQ(failure(),
                  localizedDescription(std::make_exception_ptr(TesselError(TesselError::Case::diskChanged))));
        EXPECT_EQ(script.writes, touchedBefore[question].writes);
        EXPECT_EQ(script.readOffsets.size(), touchedBefore[question].reads);
    }
}

TEST_F(ImageTransferTests, aCardThatLiesIsCaughtAfterThreeReads) {
    useImage(2 * chunk);
    script.onRead = [this](std::span<std::byte> bytes, uint64_t offset) -> std::optional<SystemResult> {
        std::memcpy(bytes.data(), script.medium.data() + offset, bytes.size());
        if (offset == chunk) bytes[1] ^= std::byte{0x40};
        return SystemResult{.value = bytes.size()};
    };
    char expected[100];
    std::snprintf(expected, sizeof expected,
                  "Verification failed at byte offset 8388609: expected 0x%02X, read 0x%02X.",
                  std::to_integer<unsigned>(image[chunk + 1]),
                  std::to_integer<unsigned>(image[chunk + 1] ^ std::byte{0x40}));
    EXPECT_EQ(failure(), expected);
    EXPECT_THAT(script.readOffsets, ElementsAre(0, chunk, chunk, chunk));
    EXPECT_EQ(script.synchronizations, 3) << "once after writing, and before each further read";
}

TEST_F(ImageTransferTests, aCardThatSilentlyDropsWritesIsCaught) {
    useImage(chunk + 512);
    script.onWrite = [](std::span<const std::byte> bytes, uint64_t) {
        return SystemResult{.value = bytes.size()};
    };
    EXPECT_THAT(failure(), testing::StartsWith("Verification failed at byte offset 0: expected 0x"));
    ASSERT_EQ(transfer(false), nullptr) << "only verification can tell";

    script.onWrite = nullptr;
    script.onRead = [](std::span<std::byte> bytes, uint64_t) { return SystemResult{.value = bytes.size()}; };
    for (const char* content : {"patterned", "zeros"}) {
        EXPECT_THAT(failure(), testing::StartsWith("Verification failed")) << "nothing read, " << content;
        folder.write("os.img", std::string(image.size(), '\0'));
    }
}

TEST_F(ImageTransferTests, staleDataThatIsRightAfterAFlushPasses) {
    useImage(2 * chunk);
    script.onRead = [this](std::span<std::byte> bytes, uint64_t offset) -> std::optional<SystemResult> {
        if (offset != chunk || script.synchronizations > 2) return std::nullopt;
        std::ranges::fill(bytes, std::byte{0});
        return SystemResult{.value = bytes.size()};
    };
    ASSERT_EQ(transfer(), nullptr);
    EXPECT_THAT(script.readOffsets, ElementsAre(0, chunk, chunk, chunk));
}

TEST_F(ImageTransferTests, anImageThatChangesOnTheWayIsNoticed) {
    const auto changed = "The selected image changed after it was selected.";
    const struct {
        const char* what;
        ImageWritePhase phase;
        std::function<void()> change;
        std::string expected;
    } cases[] = {
        {"truncated while writing", writingImage, [this] { std::filesystem::resize_file(imageURL, 100); },
         changed},
        {"grown while writing", writingImage,
         [this] { std::filesystem::resize_file(imageURL, image.size() + 1); }, changed},
        {"truncated while verifying", verifyingImage, [this] { std::filesystem::resize_file(imageURL, 0); },
         changed},
        {"grown while verifying", verifyingImage,
         [this] { std::filesystem::resize_file(imageURL, image.size() + 1); }, changed},
    };
    for (const auto& [what, phase, change, expected] : cases) {
        SCOPED_TRACE(what);
        useImage(4 * chunk);
        onReport = [&](const ImageWriteProgress& report) {
            if (report.phase == phase && report.completedBytes == chunk) change();
        };
        EXPECT_EQ(failure(), expected);
    }
    useImage(2 * chunk);
    std::filesystem::resize_file(imageURL, 7);
    EXPECT_EQ(failure(), changed) << "before it was opened";
    std::filesystem::remove(imageURL);
    EXPECT_EQ(failure(),
              "The selected image could not be opened by the application process: "
              "No such file or directory.");
}

TEST_F(ImageTransferTests, anImageRewrittenInPlaceFailsTheVerification) {
    useImage(2 * chunk);
    onReport = [this](const ImageWriteProgress& report) {
        if (report.phase == synchronizing)
            patchImageFile(chunk + 3, image[chunk + 3] == std::byte{'x'} ? "y" : "x");
    };
    EXPECT_THAT(failure(), testing::StartsWith("Verification failed at byte offset 8388611: expected 0x7"));

    useImage(2 * chunk);
    onReport = [this](const ImageWriteProgress& report) {
        if (report.phase != synchronizing) return;
        patchImageFile(3, "changed");
        std::memcpy(script.medium.data() + 3, "changed", 7);
    };
    EXPECT_EQ(failure(), "The selected image changed after it was selected.")
        << "image and card agree, but it is not what was written";
}

TEST_F(ImageTransferTests, aStopTakesEffectAtTheNextCheckpoint) {
    useImage(3 * chunk);
    ASSERT_EQ(transfer(), nullptr);
    const auto allReports = reports;
    const auto isLastOfItsPhase = [this](const ImageWriteProgress& report) {
        return report.phase != synchronizing && report.completedBytes == image.size();
    };
    for (size_t last = 0; last < allReports.size(); ++last) {
        SCOPED_TRACE(last);
        script.writes = 0;
        reports.clear();
        onReport = [&](const ImageWriteProgress&) {
            if (reports.size() == last + 1) stop.request_stop();
        };
        const auto error = transfer();
        const bool nothingLeftToStop =
            allReports[last].phase == verifyingImage && isLastOfItsPhase(allReports[last]);
        if (nothingLeftToStop) {
            EXPECT_EQ(error, nullptr);
            continue;
        }
        ASSERT_NE(error, nullptr);
        EXPECT_THROW(std::rethrow_exception(error), CancellationError);
        if (allReports[last].phase == writingImage && !isLastOfItsPhase(allReports[last])) {
            EXPECT_EQ(reports.size(), last + 1);
            EXPECT_EQ(script.writes, static_cast<int>(last)) << "nothing is written after the stop";
        }
    }
}

}  // namespace tessel
