#include <thread>

#include "tests/faults/SystemCallFaults.h"
#include "tests/viewmodel/ViewModelTest.h"

namespace tessel {

using testing::ElementsAre;

/// Uses an image on a disk that no longer answers.
class HungImageTests : public ViewModelTest {};

TEST_F(HungImageTests, aChoiceThatHangsLeavesTheWindowAliveAndCanBeCancelled) {
    image = folder.write("os.img", imageContent);
    desktop.onPanel = [this] { return image; };
    const std::function<void()> fromPanel = [this] { viewModel->chooseImage(); };
    const std::function<void()> dropped = [this] { viewModel->chooseImage(image); };
    const struct {
        const char* call;
        std::function<void()> choose;
    } cases[] = {
        {"lstat image", fromPanel},
        {"open image", fromPanel},
        {"realpath image", dropped},
        {"lstat image", dropped},
    };
    for (const auto& [call, chooseIt] : cases) {
        SCOPED_TRACE(call);
        SystemCallFaults faults({}, image);
        faults.plant({.call = call, .effect = "never answers"});
        chooseIt();
        auto user = std::thread([&] {
            faults.awaitShowing();
            loop->post([this] {
                EXPECT_EQ(stateText(), "selectingImage");
                viewModel->cancelImageChoice();
            });
        });
        runUntilIdle();
        user.join();
        EXPECT_EQ(stateText(), "idle");
        EXPECT_THAT(takeLog(), ElementsAre("Image selection was cancelled."));
        EXPECT_FALSE(viewModel->image().selectedImage());
    }
}

}  // namespace tessel
