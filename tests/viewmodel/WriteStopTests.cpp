#include <chrono>
#include <functional>
#include <thread>

#include "tests/viewmodel/WriteTaskTest.h"

namespace tessel {

using testing::ElementsAre;
using testing::IsEmpty;
using Fault = FaultyDevice::Fault;

class WriteStopTests : public WriteTaskTest {
  protected:
    /// Returns the thread of a user who stops the write as soon as this many more commands have begun.
    std::thread stopOnceCommandsHaveBegun(size_t count, const std::function<void()>& andThen = [] {}) {
        return std::thread([this, andThen, end = reader.calls().size() + count] {
            for (int waits = 0; reader.calls().size() < end && waits < 10'000; ++waits)
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            andThen();
            loop->post([this] { viewModel->requestStop(); });
        });
    }
};

TEST_F(WriteStopTests, aDismissedPromptIsACancellation) {
    prepareWrite();
    reader.setBehaviour("disk4", {.authorization = "dismissed"});
    write();
    expectCancellation(interrupted);
    EXPECT_EQ(takeLog(),
              logUpTo(authorizingDevice) + cancellationLog(interrupted) + Messages{nothingWritten});
    EXPECT_EQ(viewModel->progress().writeHint, nothingWritten);
    EXPECT_THAT(desktop.events, ElementsAre(activityBegun, "end", "attention"));
    EXPECT_EQ(desktop.lastNotification.title, "Operation Cancelled");
    EXPECT_EQ(desktop.lastNotification.text, interrupted);
}

TEST_F(WriteStopTests, aStopTakesEffectWhereverItComes) {
    const struct {
        std::string moment;
        Messages log;
        const char* message;
        std::string commands;
        bool verifies = true;
    } cases[] = {
        {revalidating, {revalidating}, interrupted, ""},
        {verificationEnabled, {revalidating, writing, verificationEnabled}, interrupted, "list info"},
        {phaseMessages[0], logUpTo(preparingTarget), interrupted, "list info list info"},
        {phaseMessages[1], logUpTo(authorizingDevice), interrupted, "list info list info unmount eject"},
        {phaseMessages[2], logUpTo(writingImage), interrupted, allCommands},
        {"9 MB of 9 MB written.", logUpTo(writingImage), unverified, allCommands},
        {phaseMessages[3], logUpTo(synchronizing), unverified, allCommands},
        {phaseMessages[3], unverifiedLogUpTo(synchronizing), finalizing, allCommands, false},
        {phaseMessages[4], logUpTo(verifyingImage), unverified, allCommands},
    };
    for (const auto& [moment, log, message, commands, verifies] : cases) {
        SCOPED_TRACE(moment);
        prepareWrite();
        viewModel->setVerifyAfterWrite(verifies);
        double progress = 0;
        when(moment, [&] {
            EXPECT_TRUE(viewModel->write().canRequestStop());
            viewModel->requestStop();
            EXPECT_FALSE(viewModel->write().canRequestStop());
            viewModel->requestStop();
            progress = viewModel->progress().writeOperationProgress;
            EXPECT_EQ(viewModel->progress().writePhaseTitle, "Stopping Operation");
            EXPECT_EQ(
                viewModel->progress().writeProgressDetail,
                "Stopping at the next safe checkpoint, closing the raw device, and ejecting the SD card "
                "when possible.");
        });
        write();
        expectCancellation(message);
        const bool hasBegun = std::ranges::count(log, phaseMessages[2]) > 0;
        EXPECT_EQ(takeLog(), log + (hasBegun ? stopLog(message) : stopLogBeforeWriting()));
        EXPECT_EQ(viewModel->progress().writeHint, hasBegun ? "" : nothingWritten);
        EXPECT_EQ(takeCommands(), commands);
        EXPECT_EQ(viewModel->progress().writeOperationProgress, progress);
        EXPECT_THAT(desktop.events, ElementsAre(activityBegun, "end"));
    }
}

TEST_F(WriteStopTests, aStopMayComeBeforeTheWriteBegins) {
    prepareWrite();
    viewModel->startWrite();
    viewModel->requestStop();
    runUntilIdle();
    EXPECT_EQ(takeLog(), stopLogBeforeWriting());
    EXPECT_THAT(desktop.events, IsEmpty());
}

TEST_F(WriteStopTests, aStopEndsThePauseBetweenAttempts) {
    prepareWrite();
    reader.removeDisk("disk4");
    auto user = stopOnceCommandsHaveBegun(1);
    write();
    user.join();
    expectCancellation(interrupted);
    EXPECT_EQ(takeLog(), Messages{revalidating} + stopLogBeforeWriting());
    EXPECT_EQ(takeCommands(), "list");
}

TEST_F(WriteStopTests, aStopWaitsForWhatIsUnderWayAndForNothingElse) {
    const struct {
        size_t commandsBegun;
        ImageWritePhase reached;
        std::string commands;
    } cases[] = {
        {5, preparingTarget, "list info list info unmount eject"},
        {6, authorizingDevice, "list info list info unmount authorize eject"},
        {8, authorizingDevice, "list info list info unmount authorize list info eject"},
    };
    for (const auto& [commandsBegun, reached, commands] : cases) {
        SCOPED_TRACE(commands);
        prepareWrite();
        reader.setBehaviour(
            "disk4",
            {.delays = {{"unmountDisk", 0.5}, {"authopen", 0.5}, {"info", commandsBegun > 6 ? 1 : 0}}});
        auto user = stopOnceCommandsHaveBegun(commandsBegun, [&] {
            if (commandsBegun > 6) reader.changeDetails("disk4", {{"WritableMedia", false}});
        });
        write();
        user.join();
        expectCancellation(interrupted);
        EXPECT_EQ(viewModel->progress().currentWritePhase, reached);
        EXPECT_EQ(takeLog(), logUpTo(reached) + stopLogBeforeWriting());
        EXPECT_EQ(takeCommands(), commands);
    }
}

TEST_F(WriteStopTests, aStopGoesBeforeAChangedImage) {
    prepareWrite();
    interpose("if [ $1 = info ] && mkdir $0.once 2>/dev/null; then exit 1; fi\nexec $real \"$@\"");
    const auto foundLate = "Disk revalidation succeeded on attempt 2.";
    when(foundLate, [this] {
        std::filesystem::resize_file(image, 1);
        viewModel->requestStop();
    });
    write();
    expectCancellation(interrupted);
    EXPECT_EQ(takeLog(), (Messages{revalidating, foundLate}) + stopLogBeforeWriting());
}

TEST_F(WriteStopTests, anErrorAfterAStopIsNoFailure) {
    prepareWrite();
    reader.setBehaviour("disk4", {.authorization = "busy", .delays = {{"authopen", 0.5}}});
    auto user = stopOnceCommandsHaveBegun(6);
    write();
    user.join();
    expectCancellation(interrupted);
    EXPECT_EQ(takeLog(), logUpTo(authorizingDevice) + stopLogBeforeWriting());
    EXPECT_FALSE(viewModel->write().hasFailed());
    EXPECT_THAT(desktop.events, ElementsAre(activityBegun, "end"));
}

TEST_F(WriteStopTests, aStopDuringTheLastEjectDoesNotHideTheFailure) {
    prepareWrite();
    fault = Fault::read;
    const auto failure =
        "Error: The SD card could not be read for verification at byte offset 0: Input/output error";
    when(failure, [this] { viewModel->requestStop(); });
    write();
    expectCancellation(unverified);
    EXPECT_EQ(takeLog(), logUpTo(verifyingImage) + Messages{failure} + stopLog(unverified));
    EXPECT_TRUE(viewModel->write().hasFailed());
    EXPECT_THAT(desktop.events, ElementsAre(activityBegun, "end", "attention"));
    EXPECT_EQ(takeCommands(), allCommands);
}

TEST_F(WriteStopTests, nothingElseHappensDuringAWriteAndNoStopDuringTheEject) {
    prepareWrite();
    viewModel->startWrite();
    tryEverything();
    when(phaseMessages[5], [this] {
        tryEverything();
        EXPECT_FALSE(viewModel->write().canRequestStop()) << "the eject is under way";
        viewModel->requestStop();
    });
    runUntilIdle();
    EXPECT_EQ(stateText(), "completed: Image written and verified");
    EXPECT_EQ(takeLog().size(), logUpTo(ejecting).size() + 3);
    EXPECT_EQ(takeCommands(), allCommands);
}

}  // namespace tessel
