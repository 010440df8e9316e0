#include "tests/viewmodel/ViewModelTest.h"

namespace tessel {

using enum ImageWritePhase;

using WriteProgressTests = ViewModelTest;

TEST_F(WriteProgressTests, showsEveryReportAndLogsEveryPhaseOnce) {
    constexpr auto largest = std::numeric_limits<uint64_t>::max();
    const struct {
        ImageWriteProgress report;
        double overall;
        double preparationAndWriting;
        const char* detail;
        bool isLogged = false;
    } rows[] = {
        {{preparingTarget, 0, 4}, 0.02, 0.02, "Unmounting and preparing the selected SD card.", true},
        {{authorizingDevice, 0, 4}, 0.05, 0.06, "Waiting for authorized raw-device access.", true},
        {{writingImage, 0, 0}, 0.05, 0.06, "Zero KB of Zero KB written.", true},
        {{writingImage, 1'950'000'000, 3'900'000'000}, 0.36, 0.51, "1.95 GB of 3.9 GB written."},
        {{writingImage, 3'000'000, 2'000'000}, 0.67, 0.96, "3 MB of 2 MB written."},
        {{synchronizing, 4, 4}, 0.7, 0.98, "Flushing written data to the physical media.", true},
        {{verifyingImage, 0, 4'000}, 0.7, 1, "Zero KB of 4 KB verified.", true},
        {{verifyingImage, 2'000, 4'000}, 0.835, 1, "2 KB of 4 KB verified."},
        {{verifyingImage, largest, largest}, 0.97, 1, "9.22 EB of 9.22 EB verified."},
        {{ejecting, 4, 4}, 0.99, 1, "Ejecting the completed SD card.", true},
        {{writingImage, 2'000, 4'000}, 0.36, 0.51, "2 KB of 4 KB written.", true},
        {{completed, 4, 4}, 1, 1, "The SD-card operation completed successfully."},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.detail);
        viewModel->applyWriteProgress(row.report);
        EXPECT_DOUBLE_EQ(viewModel->progress().writeOperationProgress, row.overall);
        EXPECT_DOUBLE_EQ(viewModel->progress().sdPreparationAndWriteProgress, row.preparationAndWriting);
        EXPECT_EQ(viewModel->progress().writeProgressDetail, row.detail);
        EXPECT_DOUBLE_EQ(viewModel->overallWorkflowProgress(), 0.4 + 0.6 * row.overall);
        const auto messages = takeLog();
        if (row.isLogged) {
            EXPECT_THAT(messages, testing::ElementsAre(phaseMessages[static_cast<size_t>(row.report.phase)]));
        } else {
            EXPECT_TRUE(messages.empty());
        }
        const int changesBefore = changes;
        viewModel->applyWriteProgress(row.report);
        EXPECT_EQ(changes, changesBefore) << "a repeated report changes nothing";
    }
}

TEST_F(WriteProgressTests, whatWasReachedStaysUntilTheNextWrite) {
    EXPECT_EQ(viewModel->overallWorkflowProgress(), 0);
    EXPECT_EQ(viewModel->progress().sdPreparationAndWriteProgress, 0);
    choose(folder.write("os.img", "image"));
    scan();
    viewModel->selectDisk("disk4");
    reader.removeDisk("disk4");
    viewModel->startWrite();
    EXPECT_DOUBLE_EQ(viewModel->overallWorkflowProgress(), 0.4);
    viewModel->applyWriteProgress({synchronizing, 5, 5});
    EXPECT_DOUBLE_EQ(viewModel->overallWorkflowProgress(), 0.82);
    runUntilIdle();
    EXPECT_EQ(stateText(), "failed: Image write failed");
    EXPECT_DOUBLE_EQ(viewModel->overallWorkflowProgress(), 0.82) << "what was reached stays to be seen";
    viewModel->startWrite();
    EXPECT_DOUBLE_EQ(viewModel->overallWorkflowProgress(), 0.4) << "the next write begins anew";
    runUntilIdle();
}

TEST_F(WriteProgressTests, wordsThatReplaceAReportEndTheSpeed) {
    viewModel->startWrite();
    for (const unsigned second : {0U, 2U, 4U})
        viewModel->applyWriteProgress({writingImage, second * 8'000'000, 1'000'000'000},
                                      TransferRate::TimePoint(std::chrono::seconds(second)));
    EXPECT_NE(viewModel->progress().writeTransferRate, "");
    runUntilIdle();
    EXPECT_EQ(stateText(), "failed: Image write failed");
    EXPECT_EQ(viewModel->progress().writeTransferRate, "");
}

}  // namespace tessel
