#include "tests/app/WindowTest.h"

namespace tessel {

namespace {

using testing::Contains;

using ImageChoiceTests = WindowTest;

}  // namespace

TEST_F(ImageChoiceTests, nothingOfItIsNotedInTheUsersSettings) {
    const auto settings = folder.path() / "settings";
    std::filesystem::create_directory(settings);
    qputenv("XDG_CONFIG_HOME", settings.c_str());
    open();
    answerPanel(image);
    answerPanel(image, "Cancel");
    application.reset();
    EXPECT_TRUE(std::filesystem::is_empty(settings));
}

}  // namespace tessel
