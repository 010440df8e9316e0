#pragma once

#include <gmock/gmock.h>

#include <functional>
#include <map>
#include <regex>
#include <utility>

#include "foundation/Text.h"
#include "rehearsal/FileDevice.h"
#include "rehearsal/SimulatedReader.h"
#include "tests/support/FaultyDevice.h"
#include "tests/support/MemoryDevice.h"
#include "tests/support/OpenResources.h"
#include "tests/support/RunLoop.h"
#include "tests/support/TemporaryFolder.h"
#include "viewmodel/TesselViewModel.h"

namespace tessel {

using Messages = std::vector<std::string>;

/// A desktop that records what is asked of it, and answers as the test says.
class ScriptedDesktop : public Desktop {
  public:
    std::function<std::optional<std::filesystem::path>()> onPanel;
    std::function<void()> onActivityEnd = [] {};
    OpenPanel lastPanel;
    Alert lastAlert;
    Notification lastNotification;
    std::vector<std::string> events;

    Task<std::optional<std::filesystem::path>> runOpenPanel(OpenPanel panel) override {
        lastPanel = std::move(panel);
        events.emplace_back("panel");
        co_return onPanel();
    }
    void presentAlert(const Alert& alert) override {
        lastAlert = alert;
        events.emplace_back("alert");
    }
    void beep() override { events.emplace_back("beep"); }
    void requestUserAttention(const Notification& notification) override {
        lastNotification = notification;
        events.emplace_back("attention");
    }
    std::unique_ptr<TemporaryActivity> beginActivity(const std::string& reason) override {
        events.push_back("begin: " + reason);
        return std::make_unique<Activity>(*this);
    }

  private:
    struct Activity : TemporaryActivity {
        explicit Activity(ScriptedDesktop& desktop) : desktop(desktop) {}
        ~Activity() override {
            desktop.events.emplace_back("end");
            desktop.onActivityEnd();
        }
        ScriptedDesktop& desktop;
    };
};

/// A view model whose computer has a card, disk4, and a system disk, disk0. Nothing has been done with it
/// yet.
class ViewModelTest : public LeavesNothingOpen {
  protected:
    static constexpr uint64_t cardSize = 600'000'000;
    static constexpr uint64_t imageSize = 9'000'001;  ///< in bytes: two chunks, the second not a whole block

    /// The messages logged on entering a phase, in the order of the phases.
    static constexpr const char* phaseMessages[] = {
        "Preparing the selected SD card and unmounting its volumes.",
        "Requesting authorized access to the raw SD-card device.",
        "Authorized raw-device access was granted. Writing image data.",
        "Image data was written. Synchronizing the physical media.",
        "Synchronization completed. Verifying the image through the same raw-device descriptor.",
        "The media operation completed. Ejecting the SD card.",
    };

    explicit ViewModelTest(SimulatedDisk::Medium cardMedium = SimulatedDisk::Medium::plainFile) {
        mayCloseLate = true;
        behaveAsUsual();
        reader.addDisk({.identifier = "disk0",
                        .mediaName = "Internal SSD",
                        .sizeBytes = 500'000'000'000,
                        .isInternal = true,
                        .isRemovable = false,
                        .medium = SimulatedDisk::Medium::none});
        reader.addDisk({.identifier = "disk4",
                        .mediaName = "SD Card Reader",
                        .sizeBytes = cardSize,
                        .partitions = {{.identifier = "disk4s1", .content = "Linux"}},
                        .medium = cardMedium});
        viewModel->onChange = [this] { noteChange(); };
    }

    // What the user does

    void scan() {
        viewModel->refreshDisks();
        runUntilIdle();
    }

    void choose(const std::optional<std::filesystem::path>& file) {
        desktop.onPanel = [file] { return file; };
        viewModel->chooseImage();
        runUntilIdle();
    }

    /// Runs the loop until no operation runs.
    void runUntilIdle() {
        isWaiting = true;
        if (isOccupied()) loop->run();
        isWaiting = false;
    }

    void write() {
        viewModel->startWrite();
        runUntilIdle();
    }

    /// Calls the function at the moment when the text has become the last message of the log, or the detail.
    void when(std::string text, std::function<void()> act) {
        awaitedText = std::move(text);
        onAwaitedText = std::move(act);
    }

    /// Calls every operation. Expects that none has an effect, now or later.
    void tryEverything() {
        const auto changesBefore = changes;
        const auto eventsBefore = desktop.events;
        viewModel->chooseImage();
        viewModel->selectDisk("disk4");
        viewModel->startWrite();
        viewModel->clearLog();
        viewModel->setVerifyAfterWrite(!viewModel->write().verifyAfterWrite());
        viewModel->refreshDisks();
        EXPECT_EQ(changes, changesBefore);
        EXPECT_EQ(desktop.events, eventsBefore);
    }

    // What the machine does

    /// Runs these lines of shell in place of the disk utility, or of another one; `$real` is the utility
    /// itself.
    void interpose(const std::string& commands, const std::string& utility = "diskutil") {
        folder.writeScript(utility,
                           "real='" + (folder.path() / "reader" / utility).string() + "'\n" + commands);
    }

    void behaveAsUsual() {
        for (const auto* utility : {"diskutil", "authopen"})
            interpose("exec $real \"$@\"", utility);
    }

    /// Makes a new image and a new card and selects both. Forgets what happened until then.
    void prepareWrite() {
        behaveAsUsual();
        for (const auto* disk : {"disk0", "disk4"})
            reader.reinsert(disk);
        reader.setBehaviour("disk4", {});
        reader.changeDetails("disk4", {{"TotalSize", cardSize}, {"WritableMedia", true}});
        fault = FaultyDevice::Fault::none;

        image = folder.write("os.img", imageContent);
        scan();
        choose(image);
        viewModel->selectDisk("disk4");
        ASSERT_TRUE(viewModel->canStartWrite());
        takeLog();
        takeCommands();
        desktop.events.clear();
    }

    // What is to be seen

    std::string stateText() const {
        static constexpr const char* names[] = {
            "idle", "selectingImage", "scanningDisks", "writingImage", "completed", "warning", "failed"};
        const auto& state = viewModel->state();
        const std::string name = names[static_cast<size_t>(state.kind)];
        return state.text.empty() ? name : name + ": " + state.text;
    }

    /// Returns the messages that are new since the last call, without their time stamps.
    Messages takeLog() {
        static const std::regex stamp(R"(^\[([01]\d|2[0-3])(:[0-5]\d){2}\] )");
        const auto& lines = viewModel->log().logLines();
        Messages messages;
        for (; linesTaken < lines.size(); ++linesTaken) {
            EXPECT_TRUE(std::regex_search(lines[linesTaken], stamp)) << lines[linesTaken];
            messages.push_back(std::regex_replace(lines[linesTaken], stamp, ""));
        }
        if (!lines.empty()) {
            EXPECT_EQ(viewModel->log().logText(), joined(lines, "\n"));
        }
        return messages;
    }

    /// Returns the commands that were run since the last call: a word for each of the usual ones, any other
    /// in full.
    std::string takeCommands() {
        static const std::map<std::string, std::string> names = {
            {"diskutil list -plist", "list"},
            {"diskutil info -plist /dev/disk4", "info"},
            {"diskutil unmountDisk force /dev/disk4", "unmount"},
            {"authopen -stdoutpipe -o 2 /dev/rdisk4", "authorize"},
            {"diskutil eject /dev/disk4", "eject"}};
        const auto calls = reader.calls();
        Messages words;
        for (; callsTaken < calls.size(); ++callsTaken) {
            const auto name = names.find(calls[callsTaken]);
            words.push_back(name == names.end() ? calls[callsTaken] : name->second);
        }
        return joined(words, " ");
    }

    Messages listedDisks() const {
        Messages identifiers;
        for (const auto& disk : viewModel->targets().disks())
            identifiers.push_back(disk.id);
        return identifiers;
    }

    TemporaryFolder folder;
    SimulatedReader reader{folder.path() / "reader", TESSEL_SIMULATED_PROGRAMS};
    ScriptedDesktop desktop;
    FaultyDevice::Fault fault = FaultyDevice::Fault::none;
    std::string imageContent = patternedImage();
    std::filesystem::path image;
    int changes = 0;
    std::shared_ptr<RunLoop> loop = std::make_shared<RunLoop>();
    const DiskService diskService{folder.path() / "diskutil"};
    const RawDeviceFactory makeDevice = [this](FileDescriptor descriptor) -> std::unique_ptr<RawDevice> {
        return std::make_unique<FaultyDevice>(makeRehearsalDevice(std::move(descriptor)), fault);
    };
    std::shared_ptr<TesselViewModel> viewModel = TesselViewModel::create(
        {.mainThread = loop,
         .desktop = desktop,
         .diskService = diskService,
         .imageWriterService = {diskService, RawDiskOpener(folder.path() / "authopen", makeDevice)}});

  private:
    static std::string patternedImage() {
        const auto bytes = patternedBytes(imageSize);
        return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
    }

    bool isOccupied() const { return viewModel->isBusy() || viewModel->write().exists(); }

    void noteChange() {
        ++changes;
        if (isWaiting && !isOccupied()) loop->stop();
        const auto& lines = viewModel->log().logLines();
        const bool isLogged = !lines.empty() && lines.back().ends_with("] " + awaitedText);
        if (onAwaitedText && (isLogged || viewModel->progress().writeProgressDetail == awaitedText)) {
            std::exchange(onAwaitedText, nullptr)();
        }
    }

    std::string awaitedText;
    std::function<void()> onAwaitedText;
    bool isWaiting = false;
    size_t linesTaken = 0;
    size_t callsTaken = 0;
};

}  // namespace tessel
