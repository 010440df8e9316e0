#include <gmock/gmock.h>

#include <cerrno>
#include <cstdio>

#include "foundation/Errors.h"
#include "tests/services/ImageTransferTest.h"

namespace tessel {

using enum ImageWritePhase;

using ImageTransferTests = ImageTransferTest;

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
        {2 * chunk + 1, 512, 3 * chunk},
        {3, MiB, 2 * MiB},
    };
    for (const auto& [imageSize, blockSize, cardSize] : cases) {
        SCOPED_TRACE(imageSize);
        medium = {.bytes = {}, .blockSize = blockSize};
        reports.clear();
        useImage(imageSize, cardSize);

        ASSERT_EQ(transfer(), nullptr);
        expectCardHoldsImage();
        EXPECT_EQ(medium.synchronizations, 2) << "before it is read back, and before it is called verified";

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
        EXPECT_EQ(medium.readOffsets, expectedReads);
    }
}

TEST_F(ImageTransferTests, aDisturbedMediumEndsTheTransferBeforeItIsTouched) {
    const std::pair<Disturbance, const char*> disturbances[] = {
        {Disturbance::exchanged, "The selected disk changed after it was scanned."},
        {Disturbance::possiblyExchanged, "The computer was asleep while the SD card was open"},
        {Disturbance::writtenByOthers, "Another program is writing to this card."}};
    for (const auto& [disturbance, sentence] : disturbances) {
        for (const auto phase : {writingImage, synchronizing, verifyingImage}) {
            useImage(2 * chunk);
            medium = {.bytes = medium.bytes};
            onReport = [&](const ImageWriteProgress& report) {
                const bool isBetweenChunks = report.completedBytes == chunk || phase == synchronizing;
                if (report.phase == phase && isBetweenChunks) medium.disturbance = disturbance;
            };
            EXPECT_THAT(failure(phase == verifyingImage), testing::StartsWith(sentence));
            EXPECT_EQ(medium.writes, phase == writingImage ? 1 : 2);
            EXPECT_EQ(medium.readOffsets.size(), phase == verifyingImage ? 1U : 0U);
        }
    }
}

TEST_F(ImageTransferTests, theRestOfAShortWriteDoesNotGoToAnotherMedium) {
    useImage(chunk);
    medium.isExchangedDuringWrite = true;
    EXPECT_THAT(failure(), testing::StartsWith("The selected disk changed after it was scanned."));
    EXPECT_EQ(medium.writes, 1);
}

TEST_F(ImageTransferTests, whatCannotFitIsRefused) {
    useImage(MiB + 1, MiB);
    EXPECT_EQ(failure(), "The selected image is larger than the selected SD card.");
    EXPECT_EQ(medium.writes, 0);
}

TEST_F(ImageTransferTests, anImageThatChangesOnTheWayIsNoticed) {
    const auto changed = "The selected image changed after it was selected.";
    for (const auto phase : {writingImage, verifyingImage}) {
        for (const size_t newSize : {size_t{0}, size_t{100}, 4 * chunk + 1}) {
            useImage(4 * chunk);
            onReport = [&](const ImageWriteProgress& report) {
                if (report.phase == phase && report.completedBytes == chunk)
                    std::filesystem::resize_file(imageURL, newSize);
            };
            EXPECT_EQ(failure(), changed) << newSize << " bytes in phase " << static_cast<int>(phase);
        }
    }
    useImage(2 * chunk);
    std::filesystem::resize_file(imageURL, 7);
    EXPECT_EQ(failure(), changed) << "before it was opened";
}

TEST_F(ImageTransferTests, anImageRewrittenInPlaceFailsTheVerification) {
    useImage(2 * chunk);
    onReport = [this](const ImageWriteProgress& report) {
        if (report.phase == synchronizing)
            patchImageFile(chunk + 3, image[chunk + 3] == std::byte{'x'} ? "y" : "x");
    };
    EXPECT_THAT(failure(), testing::StartsWith("Verification failed at byte offset 8388611: expected 0x7"));
    EXPECT_THAT(medium.readOffsets, testing::ElementsAre(0, chunk, chunk, chunk));
    EXPECT_EQ(medium.synchronizations, 3) << "once after writing, and before each further read";

    useImage(2 * chunk);
    onReport = [this](const ImageWriteProgress& report) {
        if (report.phase != synchronizing) return;
        patchImageFile(3, "changed");
        std::memcpy(medium.bytes.data() + 3, "changed", 7);
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
        medium.writes = 0;
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
            EXPECT_EQ(medium.writes, static_cast<int>(last)) << "nothing is written after the stop";
        }
    }
}

}  // namespace tessel
