#include <signal.h>

#include <QTimer>

#include "app/StatusTexts.h"
#include "tests/app/WindowTest.h"
#include "views/controls/StatusBadge.h"

namespace tessel {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;

class StopAndCloseTests : public WindowTest {
  protected:
    void closeAndAnswer(const QString& answer) {
        window().close();
        until([this] { return alertTitled("A Write Is Running"); });
        click(button(answer));
    }
};

}  // namespace

TEST_F(StopAndCloseTests, aStopWaitsForTheDialogAndSaysSo) {
    const auto hints = [this] {
        return std::ranges::count_if(texts(), [](const std::string& text) {
            return text.find("can't be withdrawn") != std::string::npos;
        });
    };
    reader.setBehaviour("disk4", {.delays = {{"authopen", 1}}});
    startWrite();
    until([this] { return viewModel().progress().writePhaseTitle == "Authorizing Raw Device"; });
    QTest::qWait(1);
    EXPECT_EQ(hints(), 0);
    click(button("Stop"));
    QTest::qWait(1);
    EXPECT_EQ(hints(), 1);
    EXPECT_THAT(texts(), Contains("Stopping Operation").Times(4)) << "beside what is said otherwise";
    untilIdle();
    EXPECT_EQ(hints(), 0);
}

TEST_F(StopAndCloseTests, aWriteThatDidNotBeginSaysSo) {
    const auto* hint = "Nothing was written to the SD card.";
    reader.setBehaviour("disk4", {.authorization = "dismissed"});
    startWrite();
    untilIdle();
    EXPECT_THAT(texts(), Contains(hint));
    EXPECT_THAT(announcement(viewModel()).toStdString(), testing::EndsWith(hint));
}

TEST_F(StopAndCloseTests, aWindowThatIsToCloseStartsNoWrite) {
    openReady();
    click(button("Write Disk Image"));
    notice();
    window().closeWhenWriteEnds();
    QTest::mouseClick(&button("Erase and Write to disk4"), Qt::LeftButton);
    EXPECT_FALSE(viewModel().write().exists());
    until([this] { return !window().isVisible(); });
    EXPECT_THAT(deeds(), ElementsAre());
}

TEST_F(StopAndCloseTests, theSpinnerRestsWhileTheWindowIsMinimized) {
    openWriting();
    auto& sign = the<StatusSign>();
    const auto turns = [&] {
        const auto before = sign.grab().toImage();
        QTest::qWait(300);
        return sign.grab().toImage() != before;
    };
    EXPECT_TRUE(turns());
    window().showMinimized();
    QTest::qWait(100);
    EXPECT_FALSE(turns());
    window().showNormal();
    until(turns);
}

TEST_F(StopAndCloseTests, stopAndQuitEndsOnceTheCardIsEjected) {
    openWriting();
    closeAndAnswer("Stop and Quit");
    EXPECT_TRUE(viewModel().write().isCancellationRequested());
    window().close();
    EXPECT_FALSE(alert());
    EXPECT_TRUE(window().isVisible());
    holds.writing.release();
    until([this] { return !window().isVisible(); });
    EXPECT_FALSE(viewModel().write().exists());
    EXPECT_THAT(deeds(), ElementsAre("unmountDisk", "authopen", "eject"));
}

TEST_F(StopAndCloseTests, aFailureStaysToBeSeenThoughTheUserWantedToQuit) {
    reader.setBehaviour("disk4", {.delays = {{"eject", 1}}});
    holds.reading.hold();
    startWrite();
    until([this] { return viewModel().progress().currentWritePhase == ImageWritePhase::verifyingImage; });
    std::filesystem::resize_file(image, imageSize / 2);
    holds.reading.release();
    until([this] { return viewModel().write().hasFailed(); });
    closeAndAnswer("Stop and Quit");
    untilIdle();
    QTest::qWait(20);
    EXPECT_TRUE(window().isVisible());
    EXPECT_THAT(log(), Contains("Error: The selected image changed after it was selected."));
}

TEST_F(StopAndCloseTests, theQuestionFollowsThePhaseAndEndsWhenNothingCanBeStopped) {
    reader.setBehaviour("disk4", {.delays = {{"authopen", 0.5}, {"eject", 0.5}}});
    holds.writing.hold();
    holds.reading.hold();
    startWrite();
    until([this] { return viewModel().progress().currentWritePhase == ImageWritePhase::authorizingDevice; });
    window().close();
    const std::tuple<const char*, const char*, CardHold*> questions[] = {
        {"Nothing has been written to the SD card yet.", "Continue Writing", nullptr},
        {"The SD card will then hold incomplete data.", "Continue Writing", &holds.writing},
        {"treated as unverified", "Continue Verifying", &holds.reading}};
    for (const auto& [words, goOn, hold] : questions) {
        SCOPED_TRACE(words);
        until([&] {
            return alertTitled("A Write Is Running") && shownControl<Button>(*alert(), goOn) &&
                   testing::Matches(Contains(testing::HasSubstr(words)))(textsIn(*alert()));
        });
        if (hold) hold->release();
    }
    until([this] { return viewModel().progress().currentWritePhase == ImageWritePhase::ejecting; });
    QTest::qWait(1);
    EXPECT_FALSE(alert());
    untilIdle();
    EXPECT_TRUE(window().isVisible()) << "nobody has answered";
}

TEST_F(StopAndCloseTests, closingDuringTheEjectWaitsAndTellsHowTheWriteEnded) {
    const std::string note = "Velmora Tessel quits once the card is closed and ejected.";
    for (const bool fails : {true, false}) {
        SCOPED_TRACE(fails);
        reader.reinsert("disk4");
        reader.setBehaviour("disk4", {.ejectFails = fails ? "It is stuck." : "", .delays = {{"eject", 0.5}}});
        startWrite();
        until([this] { return viewModel().progress().currentWritePhase == ImageWritePhase::ejecting; });
        EXPECT_THAT(texts(), Not(Contains(note)));
        window().close();
        QTest::qWait(1);
        EXPECT_THAT(texts(), Contains(note));
        EXPECT_FALSE(alert());
        untilIdle();
        EXPECT_TRUE(window().isVisible());
        EXPECT_THAT(texts(), Not(Contains(note)));
        EXPECT_EQ(badge(), fails ? "Image write failed" : "Image written and verified");
        if (fails) continue;
        EXPECT_TRUE(alertTitled("SD Card Is Safe to Remove"));
        click(button("Done"));
        until([this] { return !window().isVisible(); });
    }
}

TEST_F(StopAndCloseTests, aSignalEndsTheProgramWhateverIsOpen) {
    const std::pair<const char*, std::function<void()>> openings[] = {
        {"nothing", [] {}},
        {"the open panel", [this] { openPanel(); }},
        {"an image whose disk hangs",
         [this] {
             slowImage.hold();
             viewModel().chooseImage(folder.write("slow.img", "x"));
         }},
        {"the confirmation", [this] { click(button("Write Disk Image")); }},
        {"a write",
         [this] {
             holds.writing.hold();
             click(button("Write Disk Image"));
             click(button("Erase and Write to disk4"));
             until([this] { return viewModel().progress().writePhaseTitle == "Writing Image"; });
             holds.writing.release();
         }},
    };
    for (const auto& [what, openIt] : openings) {
        SCOPED_TRACE(what);
        openReady();
        QTimer::singleShot(0, qApp, [&openIt] {
            openIt();
            raise(SIGTERM);
        });
        EXPECT_EQ(application->run(), 0);
        EXPECT_FALSE(window().isVisible());
        EXPECT_FALSE(viewModel().isBusy());
        EXPECT_FALSE(QApplication::activeModalWidget());
    }
    EXPECT_THAT(deeds(), ElementsAre("unmountDisk", "authopen", "eject"));
}

}  // namespace tessel
