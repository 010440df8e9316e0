#include <chrono>

#include "foundation/Sha256.h"
#include "model/SystemWords.h"
#include "tests/support/SleepingComputer.h"
#include "tests/viewmodel/WriteTaskTest.h"

namespace tessel {

using enum ImageWritePhase;
using testing::ElementsAre;
using testing::IsEmpty;
using Fault = FaultyDevice::Fault;

using WriteTaskTests = WriteTaskTest;

const std::string writeError =
    "Error: The SD-card write did not complete at byte offset 8388608: Input/output error";

TEST_F(WriteTaskTests, nothingIsWrittenOnceTheComputerHasSleptSinceTheScan) {
    prepareWrite();
    ++secondsAsleep;
    write();
    EXPECT_EQ(viewModel->progress().writeProgressDetail, diskChanged);
    EXPECT_THAT(takeLog(),
                testing::Contains("The computer was asleep since the disks were scanned, so that another "
                                  "card may have taken the place of /dev/disk4."));
    EXPECT_EQ(takeCommands(), "");
    prepareWrite();
    write();
    EXPECT_TRUE(viewModel->state().isSuccessfulCompletion()) << "scanned again";
}

TEST_F(WriteTaskTests, writesTheCardAndSaysThatItMayBeRemoved) {
    Sha256 digest;
    digest.update(std::as_bytes(std::span(imageContent)));
    const auto digestMessage = "SHA-256 of the image: " + hexadecimal(digest.finish());
    const struct {
        bool verifies;
        Messages log;
    } cases[] = {
        {true,
         logUpTo(ejecting) + Messages{"The disk image was written, verified, and the SD card was ejected.",
                                      "The SD card is now safe to physically remove.", digestMessage}},
        {false, unverifiedLogUpTo(synchronizing) +
                    Messages{phaseMessages[5], "The disk image was written and the SD card was ejected.",
                             "The SD card is now safe to physically remove.", digestMessage}},
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
        EXPECT_TRUE(viewModel->state().isSuccessfulCompletion());
        EXPECT_EQ(takeLog(), log);
        EXPECT_EQ(takeCommands(), allCommands);
        std::string written(imageSize, '\0');
        std::ifstream(reader.mediumPath("disk4"), std::ios::binary).read(written.data(), imageSize);
        EXPECT_TRUE(written == imageContent);

        EXPECT_EQ(viewModel->progress().currentWritePhase, completed);
        EXPECT_EQ(viewModel->progress().writePhaseTitle, "Safe to Remove");
        EXPECT_EQ(viewModel->progress().writeProgressDetail, systemWords().cardEjected);
        EXPECT_EQ(viewModel->progress().writeOperationProgress, 1);
        EXPECT_EQ(viewModel->progress().sdPreparationAndWriteProgress, 1);
        EXPECT_EQ(viewModel->overallWorkflowProgress(), 1);
        EXPECT_EQ(viewModel->targets().selectedDiskID(), "");
        EXPECT_EQ(listedDisks(), Messages{"disk0"});
        EXPECT_FALSE(viewModel->canStartWrite());

        EXPECT_THAT(desktop.events, ElementsAre(activityBegun, "beep", "attention", "alert", "end"));
        EXPECT_EQ(desktop.lastAlert.message, "SD Card Is Safe to Remove");
        EXPECT_EQ(desktop.lastAlert.informativeText,
                  (verifies ? "The disk image was written and verified successfully. "
                            : "The disk image was written successfully. ") +
                      systemWords().cardEjectedAfterWrite);
        EXPECT_EQ(desktop.lastNotification.title, desktop.lastAlert.message);
        EXPECT_EQ(desktop.lastNotification.text, desktop.lastAlert.informativeText);
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
        std::string commands;
    } cases[] = {
        {"another size", [&] { interpose(otherSize); }, {mismatch}, "list info list info list info"},
        {"another size, then nothing",
         [&] { interpose(onlyOnce(otherSize) + "[ $1 = list ] && exec $real \"$@\""); },
         {mismatch},
         "list info list list"},
        {"unreadable",
         [&] { interpose("true"); },
         {"Disk revalidation could not read the selected disk: The property list could not be read: it is "
          "empty."},
         ""},
        {"gone",
         [&] { reader.removeDisk("disk4"); },
         {"Disk revalidation could not find /dev/disk4 as a whole disk.", diskGone},
         "list list list"},
    };
    for (const auto& [what, arrange, log, commands] : cases) {
        SCOPED_TRACE(what);
        prepareWrite();
        arrange();
        const auto start = std::chrono::steady_clock::now();
        write();
        const auto duration = std::chrono::steady_clock::now() - start;
        EXPECT_GE(duration, std::chrono::milliseconds(400)) << "two pauses";
        EXPECT_EQ(viewModel->progress().writeProgressDetail, diskChanged);
        EXPECT_FALSE(viewModel->write().canRequestStop());
        EXPECT_EQ(takeLog(), Messages{revalidating} + log + Messages{std::string("Error: ") + diskChanged});
        EXPECT_EQ(takeCommands(), commands);
        EXPECT_THAT(desktop.events, ElementsAre(activityBegun, "end", "attention"));
        EXPECT_TRUE(viewModel->canStartWrite()) << "the user may try again";
    }
}

TEST_F(WriteTaskTests, anImageMayBeAByteOrFillTheCard) {
    for (const uint64_t size : {uint64_t{1}, cardSize}) {
        prepareWrite();
        std::filesystem::resize_file(image, size);
        choose(image);
        when(phaseMessages[2], [this] { viewModel->requestStop(); });
        write();
        expectCancellation(interrupted);
    }
}

TEST_F(WriteTaskTests, aCardMayAnswerLate) {
    prepareWrite();
    interpose("if [ $1 = info ] && mkdir $0.once 2>/dev/null; then exit 1; fi\nexec $real \"$@\"");
    write();
    EXPECT_TRUE(viewModel->state().isSuccessfulCompletion());
    EXPECT_EQ(takeLog().at(1), "Disk revalidation succeeded on attempt 2.");
    EXPECT_EQ(takeCommands(), std::string("list ") + allCommands);
}

TEST_F(WriteTaskTests, aFailedWriteSaysOnceWhetherTheCardIsGone) {
    const struct {
        std::string moment;
        std::function<void()> happens;
        Messages log;
    } cases[] = {
        {writeError, [this] { reader.removeDisk("disk4"); },
         logUpTo(writingImage) + Messages{writeError, diskGone}},
        {writeError, [this] { interpose("exit 1"); }, logUpTo(writingImage) + Messages{writeError}},
        {phaseMessages[1],
         [this] { interpose("[ $1 = eject ] && exit 1\n$real \"$@\" | sed s/disk4/disk9/"); },
         logUpTo(authorizingDevice) + Messages{diskGone, std::string("Error: ") + diskChanged}},
        {phaseMessages[5],
         [this] { interpose("[ $1 = eject ] || exec $real \"$@\"\n$real \"$@\" > /dev/null\nexit 1"); },
         logUpTo(ejecting) +
             Messages{"Error: The image was written, but the SD card could not be ejected.", cardEjected}},
    };
    for (const auto& [moment, happens, log] : cases) {
        prepareWrite();
        if (moment == writeError) fault = Fault::secondWrite;
        when(moment, happens);
        write();
        EXPECT_EQ(takeLog(), log);
    }
}

TEST_F(WriteTaskTests, aCardThatWasEjectedAfterAFailureIsNotSaidToBeRemoved) {
    prepareWrite();
    fault = Fault::secondWrite;
    write();
    EXPECT_EQ(takeLog(), (logUpTo(writingImage) + Messages{writeError, cardEjected}));
    EXPECT_EQ(viewModel->progress().writeHint, cardEjected);

    write();
    EXPECT_EQ(takeLog(),
              (Messages{revalidating, "Disk revalidation could not find /dev/disk4 as a whole disk.",
                        std::string("Error: ") + diskChanged, cardEjected}));
    EXPECT_EQ(viewModel->progress().writeHint, cardEjected);

    reader.reinsert("disk4");
    when(writeError, [this] { reader.removeDisk("disk4"); });
    write();
    EXPECT_EQ(takeLog(), (logUpTo(writingImage) + Messages{writeError, diskGone})) << "it had come back";
    EXPECT_EQ(viewModel->progress().writeHint, "");
}

TEST_F(WriteTaskTests, aRefusalSaysWhyTheSystemProtectsTheCard) {
    const auto refusal = "The selected disk is protected: " + systemWords().cardNotWritable + " ";
    const auto protection = [](const char* reason) {
        return PropertyList::Dictionary{{"WritableMedia", false}, {"VelmoraTesselProtectionReason", reason}};
    };
    prepareWrite();
    reader.changeDetails("disk4", protection("It holds the tide tables."));
    write();
    EXPECT_EQ(viewModel->progress().writeProgressDetail, refusal + "It holds the tide tables.");

    prepareWrite();
    when(verificationEnabled, [&] { reader.changeDetails("disk4", protection("It became a swap area.")); });
    write();
    EXPECT_EQ(viewModel->progress().writeProgressDetail, refusal + "It became a swap area.");
}

TEST_F(WriteTaskTests, anImageOnTheCardItselfIsRefusedBeforeTheUnmount) {
    reader.addDisk(
        {.identifier = "disk5",
         .mediaName = "SD Card Reader",
         .sizeBytes = cardSize,
         .partitions = {{.identifier = "disk5s1", .content = "Linux", .mountPoint = folder.path()}},
         .medium = SimulatedDisk::Medium::none});
    prepareWrite();
    viewModel->selectDisk("disk5");
    EXPECT_TRUE(viewModel->canStartWrite());
    write();
    EXPECT_EQ(viewModel->progress().writePhaseTitle, "Image Write Failed");
    EXPECT_EQ(viewModel->progress().writeProgressDetail,
              "The selected image lies on the selected SD card, which a write would erase. Copy the image to "
              "another disk and select the copy.");
    EXPECT_EQ(takeCommands(), "list diskutil info -plist /dev/disk5");
}

TEST_F(WriteTaskTests, aWriteIsFinishedThoughNothingElseHoldsTheViewModel) {
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
