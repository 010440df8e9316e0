#include <chrono>
#include <thread>

#include "foundation/SystemWords.h"
#include "tests/viewmodel/ViewModelTest.h"

namespace tessel {

namespace {

using enum ImageWritePhase;
using testing::ElementsAre;
using testing::IsEmpty;
using Fault = FaultyDevice::Fault;

constexpr auto activityBegun = "begin: Writing and verifying an SD-card image";

constexpr auto revalidating = "Revalidating /dev/disk4 immediately before the destructive operation.";
constexpr auto writing = "Writing os.img to /dev/rdisk4. All existing data on the SD card will be destroyed.";
constexpr auto verificationEnabled =
    "SHA-256 verification is enabled. Verification reads the written image length back through the same "
    "authorized raw-device descriptor.";

constexpr auto interrupted =
    "Writing was interrupted. The SD card may contain incomplete or invalid data and was ejected when "
    "possible.";
constexpr auto finalizing =
    "The write had already reached its finalization stage. The SD card was ejected when possible.";
constexpr auto unverified =
    "Writing completed, but verification was interrupted. Treat the SD card as unverified before using it.";

constexpr auto diskChanged =
    "The selected disk changed after it was scanned. Refresh the disk list and select it again.";
constexpr auto imageChanged = "The selected image changed after it was selected.";
const auto isProtected = "The selected disk is protected: " + systemWords().cardNotWritable;

/// What the utilities are asked for a whole write.
constexpr auto allCommands = "list info list info unmount authorize list info eject";

Messages operator+(Messages messages, const Messages& more) {
    messages.insert(messages.end(), more.begin(), more.end());
    return messages;
}

}  // namespace

class WriteTaskTests : public ViewModelTest {
  protected:
    /// The log of a verified write that got as far as this phase.
    static Messages logUpTo(ImageWritePhase phase) {
        Messages messages{revalidating, writing, verificationEnabled};
        for (size_t i = 0; i <= static_cast<size_t>(phase); ++i)
            messages.emplace_back(phaseMessages[i]);
        return messages;
    }

    static Messages unverifiedLogUpTo(ImageWritePhase phase) {
        auto messages = logUpTo(phase);
        std::erase(messages, verificationEnabled);
        return messages;
    }

    void expectFailure(const std::string& title, const std::string& error) {
        EXPECT_EQ(stateText(), "failed: Image write failed");
        EXPECT_EQ(viewModel->writePhaseTitle(), title + " Failed");
        EXPECT_EQ(viewModel->writeProgressDetail(), error);
        EXPECT_FALSE(viewModel->canRequestStop());
    }

    void expectCancellation(const std::string& message) {
        EXPECT_EQ(stateText(), "warning: Operation cancelled");
        EXPECT_EQ(viewModel->writePhaseTitle(), "Operation Cancelled");
        EXPECT_EQ(viewModel->writeProgressDetail(), message);
        EXPECT_EQ(viewModel->selectedDiskID(), "");
        EXPECT_EQ(listedDisks(), Messages{"disk0"});
        EXPECT_FALSE(viewModel->isCancellationRequested());
    }

    static Messages cancellationLog(const std::string& message) {
        return {"Operation cancelled. " + message, "Refresh the disk list before attempting another write."};
    }

    static Messages stopLog(const std::string& message) {
        return Messages{
                   "Stop requested. The operation will stop at the next safe checkpoint, and the SD card "
                   "will be ejected when possible."} +
               cancellationLog(message);
    }
};

TEST_F(WriteTaskTests, writesTheCardAndSaysThatItMayBeRemoved) {
    const struct {
        bool verifies;
        Messages log;
    } cases[] = {
        {true,
         logUpTo(ejecting) + Messages{"The disk image was written, verified, and the SD card was ejected.",
                                      "The SD card is now safe to physically remove."}},
        {false, unverifiedLogUpTo(synchronizing) +
                    Messages{phaseMessages[5], "The disk image was written and the SD card was ejected.",
                             "The SD card is now safe to physically remove."}},
    };
    for (const auto& [verifies, log] : cases) {
        SCOPED_TRACE(verifies);
        prepareWrite();
        viewModel->setVerifyAfterWrite(verifies);
        when("The SD card is now safe to physically remove.", [this] {
            EXPECT_THAT(desktop.events, ElementsAre(activityBegun)) << "told before the beep";
            viewModel->startWrite();
            EXPECT_FALSE(viewModel->isBusy()) << "the task has not ended yet";
        });
        write();

        EXPECT_EQ(stateText(),
                  verifies ? "completed: Image written and verified" : "completed: Image written");
        EXPECT_TRUE(viewModel->isSuccessfulCompletion());
        EXPECT_EQ(takeLog(), log);
        EXPECT_EQ(takeCommands(), allCommands);
        std::string written(imageSize, '\0');
        std::ifstream(reader.mediumPath("disk4"), std::ios::binary).read(written.data(), imageSize);
        EXPECT_TRUE(written == imageContent);

        EXPECT_EQ(viewModel->writePhaseTitle(), "Safe to Remove");
        EXPECT_EQ(viewModel->writeProgressDetail(), systemWords().cardEjected);
        EXPECT_EQ(viewModel->writeOperationProgress(), 1);
        EXPECT_EQ(viewModel->sdPreparationAndWriteProgress(), 1);
        EXPECT_EQ(viewModel->overallWorkflowProgress(), 1);
        EXPECT_EQ(viewModel->selectedDiskID(), "");
        EXPECT_EQ(listedDisks(), Messages{"disk0"});
        EXPECT_FALSE(viewModel->canStartWrite());

        EXPECT_THAT(desktop.events, ElementsAre(activityBegun, "beep", "attention", "alert", "end"));
        EXPECT_EQ(desktop.lastAlert.message, "SD Card Is Safe to Remove");
        EXPECT_EQ(desktop.lastAlert.informativeText,
                  (verifies ? "The disk image was written and verified successfully. "
                            : "The disk image was written successfully. ") +
                      systemWords().cardEjectedAfterWrite);
        EXPECT_EQ(desktop.lastAlert.button, "Done");
        EXPECT_EQ(desktop.lastAlert.symbol, "eject.circle.fill");
        EXPECT_EQ(desktop.lastAlert.symbolDescription, "Safe to remove");
    }
}

TEST_F(WriteTaskTests, nothingIsTouchedWithoutAnImageAndATargetThatFit) {
    const auto file = folder.write("os.img", "image");
    const struct {
        std::function<void()> arrange;
        std::string error;
    } cases[] = {
        {[] {}, "Select an uncompressed raw image with an .img, .raw, or .bin extension."},
        {[&] { choose(file); }, "Select a recognized and eligible SD card first."},
        {[&] {
             std::filesystem::resize_file(file, cardSize + 1);
             choose(file);
             scan();
             viewModel->selectDisk("disk4");
         },
         "The selected image is larger than the selected SD card."},
    };
    for (const auto& [arrange, error] : cases) {
        SCOPED_TRACE(error);
        arrange();
        desktop.events.clear();
        takeLog();
        takeCommands();
        write();
        expectFailure("Image Write", error);
        EXPECT_THAT(takeLog(), ElementsAre("Error: " + error));
        EXPECT_EQ(takeCommands(), "");
        EXPECT_THAT(desktop.events, IsEmpty());
    }
}

TEST_F(WriteTaskTests, revalidatesTheTargetAndTheImage) {
    const std::string mismatch =
        "Disk revalidation mismatch. Expected identifier=disk4, media=SD Card Reader, bus=USB, "
        "size=600000000; observed identifier=disk4, media=SD Card Reader, bus=USB, size=600000512.";
    const std::string otherSize = "$real \"$@\" | sed s/600000000/600000512/";
    const auto onlyOnce = [](const std::string& commands) {
        return "if [ $1 = info ] && mkdir \"$0.once\" 2>/dev/null; then " + commands + "; exit; fi\n";
    };
    const struct {
        const char* what;
        std::function<void()> arrange;
        Messages log;  ///< after the announcement
        std::string error;
        std::string commands;
    } cases[] = {
        {"another size",
         [&] { interpose(otherSize); },
         {mismatch},
         diskChanged,
         "list info list info list info"},
        {"another size, then nothing",
         [&] { interpose(onlyOnce(otherSize) + "[ $1 = list ] && exec $real \"$@\""); },
         {mismatch},
         diskChanged,
         "list info list list"},
        {"unreadable",
         [&] { interpose("true"); },
         {"Disk revalidation could not read the selected disk: The property list could not be read: it is "
          "empty."},
         diskChanged,
         ""},
        {"gone",
         [&] { reader.removeDisk("disk4"); },
         {"Disk revalidation could not find /dev/disk4 as a whole disk."},
         diskChanged,
         "list list list"},
        {"write-protected",
         [&] { reader.changeDetails("disk4", {{"WritableMedia", false}}); },
         {},
         isProtected,
         "list info"},
        {"no list", [&] { interpose("echo Nobody knows. >&2; exit 1"); }, {}, "Nobody knows.", ""},
        {"a larger image",
         [&] { std::filesystem::resize_file(image, imageSize + 1); },
         {},
         imageChanged,
         "list info"},
        {"no image",
         [&] { std::filesystem::remove(image); },
         {},
         "The file “" + (folder.path() / "os.img").string() +
             "” could not be inspected: No such file or directory.",
         "list info"},
    };
    for (const auto& [what, arrange, log, error, commands] : cases) {
        SCOPED_TRACE(what);
        prepareWrite();
        arrange();
        const auto start = std::chrono::steady_clock::now();
        write();
        const auto duration = std::chrono::steady_clock::now() - start;
        if (error == diskChanged) EXPECT_GE(duration, std::chrono::milliseconds(400)) << "two pauses";
        expectFailure("Image Write", error);
        EXPECT_EQ(takeLog(), Messages{revalidating} + log + Messages{"Error: " + error});
        EXPECT_EQ(takeCommands(), commands);
        EXPECT_THAT(desktop.events, ElementsAre(activityBegun, "end"));
        EXPECT_TRUE(viewModel->canStartWrite()) << "the user may try again";
    }
}

TEST_F(WriteTaskTests, aCardMayAnswerLate) {
    const struct {
        const char* attempt;
        std::string failures;
        std::string commands;
    } cases[] = {{"2", "mkdir $0.1", std::string("list ") + allCommands},
                 {"3", "mkdir $0.2 || mkdir $0.3", std::string("list list ") + allCommands}};
    for (const auto& [attempt, failures, commands] : cases) {
        SCOPED_TRACE(attempt);
        prepareWrite();
        interpose("if [ $1 = info ] && (" + failures + ") 2>/dev/null; then exit 1; fi\nexec $real \"$@\"");
        write();
        EXPECT_TRUE(viewModel->isSuccessfulCompletion());
        const auto log = takeLog();
        ASSERT_GE(log.size(), 3u);
        EXPECT_EQ(log[1], "Disk revalidation succeeded on attempt " + std::string(attempt) + ".");
        EXPECT_EQ(log[2], writing);
        EXPECT_EQ(takeCommands(), commands);
    }
}

TEST_F(WriteTaskTests, aFailureIsTitledByItsPhase) {
    const struct {
        ImageWritePhase phase;
        const char* title;
        std::function<void()> arrange;
        std::string error;
        double progress;
    } cases[] = {
        {preparingTarget, "Preparing SD Card",
         [this] { reader.setBehaviour("disk4", {.refusesUnmount = "disk4s1 is in use."}); },
         "disk4s1 is in use.", 0.02},
        {authorizingDevice, "Authorizing Raw Device",
         [this] { reader.setBehaviour("disk4", {.authorization = "It is late."}); },
         "The authorized raw-device open failed: It is late.", 0.05},
        {writingImage, "Writing Image", [this] { fault = Fault::secondWrite; },
         "The SD-card write did not complete at byte offset 8388608: Input/output error",
         0.05 + 0.62 * 8'388'608 / imageSize},
        {synchronizing, "Synchronizing Media", [this] { fault = Fault::synchronize; },
         "The completed image could not be synchronized to the SD card: Input/output error.", 0.7},
        {verifyingImage, "Verifying Image", [this] { fault = Fault::read; },
         "The SD card could not be read for verification at byte offset 0: Input/output error", 0.7},
        {ejecting, "Ejecting SD Card",
         [this] { reader.setBehaviour("disk4", {.ejectFails = "disk4 is stuck."}); }, "disk4 is stuck.",
         0.99},
    };
    for (const auto& [phase, title, arrange, error, progress] : cases) {
        SCOPED_TRACE(title);
        prepareWrite();
        arrange();
        write();
        expectFailure(title, error);
        EXPECT_EQ(takeLog(), logUpTo(phase) + Messages{"Error: " + error});
        EXPECT_NEAR(viewModel->writeOperationProgress(), progress, 1e-9) << "it stays where it was";
        EXPECT_THAT(desktop.events, ElementsAre(activityBegun, "end"));
        EXPECT_EQ(viewModel->selectedDiskID(), "disk4");
    }
}

TEST_F(WriteTaskTests, aDismissedPromptIsACancellation) {
    prepareWrite();
    reader.setBehaviour("disk4", {.authorization = "dismissed"});
    write();
    expectCancellation(interrupted);
    EXPECT_EQ(takeLog(), logUpTo(authorizingDevice) + cancellationLog(interrupted));
    EXPECT_THAT(desktop.events, ElementsAre(activityBegun, "end"));
}

TEST_F(WriteTaskTests, aStopTakesEffectWhereverItComes) {
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
            EXPECT_TRUE(viewModel->canRequestStop());
            viewModel->requestStop();
            EXPECT_FALSE(viewModel->canRequestStop());
            viewModel->requestStop();
            progress = viewModel->writeOperationProgress();
            EXPECT_EQ(viewModel->writePhaseTitle(), "Stopping Operation");
            EXPECT_EQ(
                viewModel->writeProgressDetail(),
                "Stopping at the next safe checkpoint, closing the raw device, and ejecting the SD card "
                "when possible.");
        });
        write();
        expectCancellation(message);
        EXPECT_EQ(takeLog(), log + stopLog(message));
        EXPECT_EQ(takeCommands(), commands);
        EXPECT_EQ(viewModel->writeOperationProgress(), progress);
        EXPECT_THAT(desktop.events, ElementsAre(activityBegun, "end"));
    }
}

TEST_F(WriteTaskTests, reportsAfterAStopOnlyDecideHowItIsWorded) {
    const struct {
        std::optional<ImageWritePhase> phase;
        const char* message;
    } cases[] = {{std::nullopt, interrupted},      {preparingTarget, interrupted},
                 {authorizingDevice, interrupted}, {writingImage, interrupted},
                 {synchronizing, finalizing},      {verifyingImage, unverified},
                 {ejecting, finalizing},           {completed, finalizing}};
    for (const auto& [phase, message] : cases) {
        SCOPED_TRACE(message);
        prepareWrite();
        viewModel->startWrite();
        viewModel->requestStop();
        if (phase) viewModel->applyWriteProgress({*phase, 1, 1});
        EXPECT_EQ(viewModel->writePhaseTitle(), "Stopping Operation");
        EXPECT_EQ(viewModel->writeOperationProgress(), 0);
        runUntilIdle();
        expectCancellation(message);
        EXPECT_EQ(takeLog(), stopLog(message));
        EXPECT_EQ(takeCommands(), "") << "it was stopped before it began";
        EXPECT_THAT(desktop.events, IsEmpty());
    }
}

TEST_F(WriteTaskTests, aStopEndsThePauseBetweenAttempts) {
    prepareWrite();
    reader.removeDisk("disk4");
    const auto callsBefore = reader.calls().size();
    std::thread user([&] {
        while (reader.calls().size() == callsBefore)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        loop->post([this] { viewModel->requestStop(); });
    });
    write();
    user.join();
    expectCancellation(interrupted);
    EXPECT_EQ(takeLog(), Messages{revalidating} + stopLog(interrupted));
    EXPECT_EQ(takeCommands(), "list");
}

TEST_F(WriteTaskTests, nothingElseHappensDuringAWriteAndNoStopDuringTheEject) {
    prepareWrite();
    viewModel->startWrite();
    tryEverything();
    when(phaseMessages[5], [this] {
        tryEverything();
        EXPECT_FALSE(viewModel->canRequestStop()) << "the eject is under way";
        viewModel->requestStop();
    });
    runUntilIdle();
    EXPECT_EQ(stateText(), "completed: Image written and verified");
    EXPECT_EQ(takeLog().size(), logUpTo(ejecting).size() + 2);
    EXPECT_EQ(takeCommands(), allCommands);
}

TEST_F(WriteTaskTests, aWriteIsFinishedThoughNobodyElseHoldsTheViewModel) {
    prepareWrite();
    const std::weak_ptr<TesselViewModel> dropped = viewModel;
    desktop.onActivityEnd = [this] { loop->stop(); };
    viewModel->startWrite();
    loop->post([this] {
        EXPECT_THAT(desktop.events, ElementsAre(activityBegun)) << "it has begun";
        viewModel->onChange = nullptr;
        viewModel.reset();
    });
    loop->run();
    EXPECT_THAT(desktop.events, ElementsAre(activityBegun, "beep", "attention", "alert", "end"));
    EXPECT_EQ(takeCommands(), allCommands);
    EXPECT_TRUE(dropped.expired());
}

TEST_F(WriteTaskTests, aWriteThatHasNotBegunEndsWithItsViewModel) {
    prepareWrite();
    viewModel->startWrite();
    viewModel.reset();
    loop->post([this] { loop->stop(); });
    loop->run();
    EXPECT_THAT(desktop.events, IsEmpty());
    EXPECT_EQ(takeCommands(), "");
}

}  // namespace tessel
