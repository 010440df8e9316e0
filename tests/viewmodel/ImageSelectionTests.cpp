#include <unistd.h>

#include "tests/viewmodel/ViewModelTest.h"

namespace tessel {

using testing::ElementsAre;

using ImageSelectionTests = ViewModelTest;

TEST_F(ImageSelectionTests, takesOnlyWhatCanBeWritten) {
    const auto path = [this](const char* name) { return folder.path() / name; };
    for (const auto* name : {"os.img", "disk.IMG", "card.Raw", "x.y.bin", "disk.img.gz", "img", ".img"})
        folder.write(name, std::string(2'100'000, 'x'));
    folder.write("empty.img", "");
    std::filesystem::create_directory(path("folder.img"));
    std::filesystem::create_symlink(path("os.img"), path("link.img"));

    const std::string wrongExtension =
        "Error: Select an uncompressed raw image with an .img, .raw, or .bin extension.";
    const std::string unavailable = "Error: The selected image file is unavailable.";
    const std::string missing = "Error: The file “" + path("missing.img").string() +
                                "” could not be inspected: No such file or directory.";
    const struct {
        const char* name;
        std::string error;  ///< empty for an image that is accepted
    } cases[] = {
        {"os.img", ""},
        {"disk.IMG", ""},
        {"disk.img.gz", wrongExtension},
        {"img", wrongExtension},
        {".img", wrongExtension},
        {"empty.img", unavailable},
        {"folder.img", unavailable},
        {"link.img", ""},
        {"missing.img", missing},
        {"card.Raw", ""},
        {"x.y.bin", ""},
    };
    std::optional<SDImageFile> expected;
    for (const auto& [name, error] : cases) {
        SCOPED_TRACE(name);
        viewModel->applyWriteProgress({ImageWritePhase::synchronizing, 1, 1});
        takeLog();
        choose(path(name));
        if (error.empty()) {
            const auto url = std::filesystem::canonical(path(name));
            expected = {.url = url, .sizeBytes = 2'100'000};
            EXPECT_EQ(stateText(), "completed: Disk image selected");
            EXPECT_THAT(takeLog(),
                        ElementsAre("Selected image: " + url.string() + " (2.1 MB).",
                                    "The selected file extension is supported. Confirm that the file "
                                    "contains the intended raw disk image before writing."));
        } else {
            EXPECT_EQ(stateText(), "failed: Image selection failed");
            EXPECT_THAT(takeLog(), ElementsAre(error));
        }
        EXPECT_EQ(viewModel->progress().writeOperationProgress, error.empty() ? 0 : 0.7);
        EXPECT_EQ(viewModel->image().selectedImage(), expected)
            << "the last one stays unless there is a better one";

        choose(std::nullopt);
        EXPECT_EQ(desktop.lastPanel.title, "Select a Raw Disk Image");
        EXPECT_THAT(desktop.lastPanel.extensions, ElementsAre("img", "raw", "bin"));
        EXPECT_EQ(stateText(), "idle");
        EXPECT_THAT(takeLog(), ElementsAre("Image selection was cancelled."));
        EXPECT_EQ(viewModel->image().selectedImage(), expected);
    }
}

TEST_F(ImageSelectionTests, anImageThatTheUserMayNotReadIsRefused) {
    using std::filesystem::perms;
    const auto backup = folder.write("backup.img", "image");
    std::filesystem::permissions(backup, perms::none);
    std::filesystem::permissions(folder.path(), perms::owner_all | perms::group_exec | perms::others_exec);
    constexpr uid_t nobody = 65534;
    const auto user = geteuid();
    ASSERT_TRUE(user != 0 || seteuid(nobody) == 0) << "root may read everything";
    choose(backup);
    ASSERT_EQ(seteuid(user), 0);
    EXPECT_EQ(stateText(), "failed: Image selection failed");
    EXPECT_THAT(takeLog(), ElementsAre("Error: The file “" + backup.string() +
                                       "” could not be opened: Permission denied."));
    EXPECT_FALSE(viewModel->image().selectedImage());
}

TEST_F(ImageSelectionTests, aNameForgesNoLineOfTheLog) {
    choose(folder.write("two\nlines.img", std::string(2'100'000, 'x')));
    EXPECT_EQ(takeLog().front(),
              "Selected image: " + (folder.path() / "two\ufffdlines.img").string() + " (2.1 MB).");
}

TEST_F(ImageSelectionTests, nothingElseHappensWhileTheUserChooses) {
    scan();
    takeLog();
    desktop.onPanel = [this] {
        EXPECT_EQ(stateText(), "selectingImage");
        tryEverything();
        return std::nullopt;
    };
    viewModel->chooseImage();
    tryEverything();
    runUntilIdle();
    EXPECT_EQ(stateText(), "idle");
    EXPECT_THAT(takeLog(), ElementsAre("Image selection was cancelled."));
}

}  // namespace tessel
