#include "model/SystemWords.h"
#include "tests/viewmodel/ViewModelTest.h"

namespace tessel {

using testing::ElementsAre;

using DiskScanningTests = ViewModelTest;

TEST_F(DiskScanningTests, everyOutcomeOfAScan) {
    constexpr auto systemDisk =
        "Protected disk: Internal SSD · 500 GB · disk0. Reason: disk0 is always protected.";
    constexpr auto selectableCard =
        "Selectable SD card: SD Card Reader · 600 MB · disk4 · External · USB · FDisk_partition_scheme.";
    constexpr auto someAreSelectable =
        "All whole disks are visible. Only positively identified SD cards can be selected.";
    constexpr auto noneIsSelectable =
        "All whole disks are visible, but none passed every SD-card target safety check.";
    const struct {
        const char* what;
        std::function<void()> arrange;
        std::string state;
        Messages log;
        Messages disks;
        std::string target;
    } cases[] = {
        {"the target stays",
         [] {},
         "completed: 2 disks found · 1 selectable",
         {someAreSelectable, selectableCard, systemDisk},
         {"disk4", "disk0"},
         "disk4"},
        {"the target is gone",
         [this] { reader.removeDisk("disk4"); },
         "warning: 1 disk found · none selectable",
         {noneIsSelectable, systemDisk},
         {"disk0"},
         ""},
        {"the target became protected",
         [this] {
             reader.changeDetails("disk4", {{"WritableMedia", false},
                                            {"VelmoraTesselProtectionReason", "It holds the tide tables."}});
         },
         "warning: 2 disks found · none selectable",
         {noneIsSelectable,
          "Protected disk: SD Card Reader · 600 MB · disk4. Reason: " + systemWords().cardNotWritable +
              " It holds the tide tables.",
          systemDisk},
         {"disk4", "disk0"},
         ""},
        {"no details can be read",
         [this] {
             interpose(
                 "[ $1 = info ] && exit 1\n$real \"$@\" | tr -d '\\n\\t' | "
                 "sed 's|<key>Size</key><integer>500000000000</integer>||'");
         },
         "warning: 2 disks found · none selectable",
         {noneIsSelectable,
          "Protected disk: Disk disk4 · 600 MB · disk4. Reason: Detailed disk information could not be read.",
          "Protected disk: Disk disk0 · Unknown size · disk0. Reason: Detailed disk information could not be "
          "read."},
         {"disk4", "disk0"},
         ""},
        {"no disks",
         [this] {
             reader.removeDisk("disk0");
             reader.removeDisk("disk4");
         },
         "warning: No whole disks found",
         {systemWords().noWholeDisks},
         {},
         ""},
        {"a failing scan changes nothing",
         [this] { interpose("exit 1"); },
         "failed: Disk scan failed",
         {"Error: diskutil list failed."},
         {"disk4", "disk0"},
         "disk4"},
    };
    EXPECT_FALSE(viewModel->haveDisksChanged()) << "before the first scan";
    for (const auto& [what, arrange, state, log, disks, target] : cases) {
        SCOPED_TRACE(what);
        prepareWrite();
        arrange();
        scan();
        EXPECT_EQ(stateText(), state);
        auto messages = takeLog();
        ASSERT_FALSE(messages.empty());
        EXPECT_EQ(messages.front(), systemWords().scanStarted);
        messages.erase(messages.begin());
        EXPECT_EQ(messages, log);
        EXPECT_EQ(listedDisks(), disks);
        for (const auto& disk : viewModel->targets().disks())
            EXPECT_TRUE(disk.isWhole);
        EXPECT_EQ(viewModel->targets().selectedDiskID(), target);
        EXPECT_EQ(viewModel->canStartWrite(), !target.empty());
    }
}

TEST_F(DiskScanningTests, onlyEligibleDisksCanBeSelected) {
    scan();
    takeLog();
    const int changesBefore = changes;
    for (const auto* id : {"disk0", "disk9", ""})
        viewModel->selectDisk(id);
    EXPECT_EQ(changes, changesBefore);

    for (const auto* what : {"first", "again"}) {
        SCOPED_TRACE(what);
        viewModel->applyWriteProgress({ImageWritePhase::completed, 1, 1});
        viewModel->selectDisk("disk4");
        EXPECT_EQ(viewModel->targets().selectedDisk()->mediaName, "SD Card Reader");
        EXPECT_EQ(stateText(), "completed: Target disk4 selected");
        EXPECT_THAT(takeLog(),
                    ElementsAre("Selected SD-card target: SD Card Reader · 600 MB · disk4 · 1 partition."));
        EXPECT_EQ(viewModel->progress().writeOperationProgress, 0);
        EXPECT_EQ(viewModel->progress().sdPreparationAndWriteProgress, 0);
        EXPECT_EQ(viewModel->progress().writePhaseTitle, "Waiting to Start");
        EXPECT_EQ(viewModel->progress().writeProgressDetail, "Select an image and a recognized SD card.");
    }
}

}  // namespace tessel
