#include <gmock/gmock.h>

#include <cerrno>
#include <cstdio>

#include "foundation/Errors.h"
#include "tests/services/ImageTransferTest.h"

namespace tessel {

using enum ImageWritePhase;
using testing::ElementsAre;

using ImageTransferFaultTests = ImageTransferTest;

TEST_F(ImageTransferFaultTests, aFailingFlushIsAnError) {
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

TEST_F(ImageTransferFaultTests, anExchangedMediumEndsTheTransferBeforeItIsTouched) {
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
        script.onConfirmSameMedium = [&] { return SystemResult{.error = asked++ == question ? ENXIO : 0}; };
        EXPECT_EQ(failure(),
                  localizedDescription(std::make_exception_ptr(TesselError(TesselError::Case::diskChanged))));
        EXPECT_EQ(script.writes, touchedBefore[question].writes);
        EXPECT_EQ(script.readOffsets.size(), touchedBefore[question].reads);
    }
}

TEST_F(ImageTransferFaultTests, aCardThatLiesIsCaughtAfterThreeReads) {
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

TEST_F(ImageTransferFaultTests, aStopEndsThePauseBeforeAnotherRead) {
    useImage(chunk);
    script.onRead = [](auto bytes, auto) { return SystemResult{.value = bytes.size()}; };
    script.onSynchronize = [this] {
        if (script.synchronizations == 2) stop.request_stop();
        return SystemResult();
    };
    EXPECT_EQ(failure(), CancellationError().what());
    EXPECT_EQ(script.readOffsets.size(), 1U);
}

TEST_F(ImageTransferFaultTests, staleDataThatIsRightAfterAFlushPasses) {
    useImage(2 * chunk);
    script.onRead = [this](std::span<std::byte> bytes, uint64_t offset) -> std::optional<SystemResult> {
        if (offset != chunk || script.synchronizations > 2) return std::nullopt;
        std::ranges::fill(bytes, std::byte{0});
        return SystemResult{.value = bytes.size()};
    };
    ASSERT_EQ(transfer(), nullptr);
    EXPECT_THAT(script.readOffsets, ElementsAre(0, chunk, chunk, chunk));
}

}  // namespace tessel
