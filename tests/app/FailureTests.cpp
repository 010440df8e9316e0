#include <fstream>

#include "tests/app/WindowTest.h"
#include "views/CompactDiskTable.h"

namespace tessel {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsSupersetOf;
using Deeds = std::vector<std::string>;

/// What goes wrong once the alert is open, and what the window then shows.
struct FailedWrite {
    const char* name;
    void (*arrange)(SimulatedReader& reader, const std::filesystem::path& image);
    const char* title;
    const char* detail;
    const char* logged;  ///< beside the error itself
    Deeds deeds;
    const char* badge = "Image write failed";
    Tone tone = Tone::red;
    bool staysListed = true;
};

constexpr auto diskChanged =
    "The selected disk changed after it was scanned. Refresh the disk list and select it again.";

const FailedWrite failedWrites[] = {
    {.name = "refusedUnmount",
     .arrange = [](auto& reader, auto&) { reader.setBehaviour("disk4", {.refusesUnmount = "In use."}); },
     .title = "Preparing SD Card Failed",
     .detail = "In use.",
     .logged = "Preparing the selected SD card and unmounting its volumes.",
     .deeds = {"unmountDisk"}},
    {.name = "dismissedPrompt",
     .arrange = [](auto& reader, auto&) { reader.setBehaviour("disk4", {.authorization = "dismissed"}); },
     .title = "Operation Cancelled",
     .detail = "Writing was interrupted. The SD card may contain incomplete or invalid data and was ejected "
               "when possible.",
     .logged = "Refresh the disk list before attempting another write.",
     .deeds = {"unmountDisk", "authopen", "eject"},
     .badge = "Operation cancelled",
     .tone = Tone::orange,
     .staysListed = false},
    {.name = "busy",
     .arrange = [](auto& reader, auto&) { reader.setBehaviour("disk4", {.authorization = "busy"}); },
     .title = "Authorizing Raw Device Failed",
     .detail = "The SD card is still in use by another process. Close applications using the card, refresh "
               "the disk list, and try again.",
     .logged = "Requesting authorized access to the raw SD-card device.",
     .deeds = {"unmountDisk", "authopen", "eject"}},
    {.name = "ejectFails",
     .arrange = [](auto& reader, auto&) { reader.setBehaviour("disk4", {.ejectFails = "Stuck."}); },
     .title = "Ejecting SD Card Failed",
     .detail = "Stuck.",
     .logged = "The media operation completed. Ejecting the SD card.",
     .deeds = {"unmountDisk", "authopen", "eject", "eject"}},
    {.name = "imageGrown",
     .arrange = [](auto&, auto& image) { std::ofstream(image, std::ios::app) << "more"; },
     .title = "Image Write Failed",
     .detail = "The selected image changed after it was selected.",
     .logged = "Revalidating /dev/disk4 immediately before the destructive operation.",
     .deeds = {}},
    {.name = "cardExchanged",
     .arrange = [](auto& reader, auto&) { reader.changeDetails("disk4", {{"MediaName", "Other Card"}}); },
     .title = "Image Write Failed",
     .detail = diskChanged,
     .logged = "Disk revalidation mismatch. Expected identifier=disk4, media=SDHC Card, bus=USB, "
               "size=600000000; observed identifier=disk4, media=Other Card, bus=USB, size=600000000.",
     .deeds = {}},
    {.name = "cardExchangedDuringPrompt",
     .arrange =
         [](auto& reader, auto&) {
             reader.setBehaviour("disk4", {.exchangedDuringPrompt = {{"MediaName", "Other Card"}}});
         },
     .title = "Authorizing Raw Device Failed",
     .detail = diskChanged,
     .logged = "Requesting authorized access to the raw SD-card device.",
     .deeds = {"unmountDisk", "authopen", "eject"}},
    {.name = "writeProtected",
     .arrange = [](auto& reader,
                   auto&) { reader.changeDetails("disk4", {{"Writable", false}, {"WritableMedia", false}}); },
     .title = "Image Write Failed",
     .detail = "The selected disk is protected: macOS did not report the SD card as writable.",
     .logged = "Revalidating /dev/disk4 immediately before the destructive operation.",
     .deeds = {}},
};

/// Without this every byte of the case would be printed.
void PrintTo(const FailedWrite&, std::ostream*) {}

class FailedWriteTests : public WindowTest, public testing::WithParamInterface<FailedWrite> {};

/// What a scan finds, and what the window then shows.
struct Scan {
    const char* name;
    void (*arrange)(SimulatedReader& reader);
    const char* badge;
    Tone tone;
    const char* logged;
    const char* label;  ///< in the place of the table
};

constexpr auto noDisks = "No whole disks are available. Insert an SD card and refresh the list.";

const Scan scans[] = {
    {"fails",
     [](auto& reader) {
         const auto program = reader.utilities().diskUtility;
         std::filesystem::remove(program);
         std::ofstream(program) << "#!/bin/sh\nexit 1\n";
         std::filesystem::permissions(program, std::filesystem::perms::owner_all);
     },
     "Disk scan failed", Tone::red, "Error: diskutil list failed.", noDisks},
    {"findsNothing",
     [](auto& reader) {
         for (const char* disk : {"disk0", "disk4", "disk5", "disk7"})
             reader.removeDisk(disk);
     },
     "No whole disks found", Tone::orange,
     "macOS returned no whole-disk identifiers. Confirm that App Sandbox is disabled and press Refresh Disks "
     "again.",
     noDisks},
    {"findsNoCard",
     [](auto& reader) {
         for (const char* disk : {"disk4", "disk5"})
             reader.removeDisk(disk);
     },
     "2 disks found · none selectable", Tone::orange,
     "All whole disks are visible, but none passed every SD-card target safety check.",
     "No positively identified SD card is currently available. Enable Show All Disks only for diagnostic "
     "inspection."},
};

class ScanTests : public WindowTest, public testing::WithParamInterface<Scan> {};

constexpr auto nameOf = [](const auto& info) { return std::string(info.param.name); };

}  // namespace

TEST_P(FailedWriteTests, isShownAndLogged) {
    openReady();
    click(button("Write Disk Image"));
    GetParam().arrange(reader, image);
    click(button("Erase and Write to disk4"));
    until([this] { return viewModel().isBusy(); });
    untilIdle();

    EXPECT_EQ(badge(), GetParam().badge);
    EXPECT_EQ(badgeTone(), GetParam().tone);
    EXPECT_THAT(texts(), IsSupersetOf({GetParam().title, GetParam().detail}));
    EXPECT_THAT(log(), Contains(GetParam().logged));
    EXPECT_THAT(log(), Contains(testing::EndsWith(GetParam().detail)));
    EXPECT_EQ(deeds(), GetParam().deeds);
    EXPECT_EQ(button("Write Disk Image").isEnabled(), GetParam().staysListed);
    EXPECT_EQ(testing::Matches(Contains("disk4"))(shownDisks()), GetParam().staysListed);
    EXPECT_FALSE(hasButton("Stop"));
    EXPECT_FALSE(alert());
}
INSTANTIATE_TEST_SUITE_P(Each, FailedWriteTests, testing::ValuesIn(failedWrites), nameOf);

TEST_P(ScanTests, isShownAndLogged) {
    GetParam().arrange(reader);
    open();
    EXPECT_EQ(badge(), GetParam().badge);
    EXPECT_EQ(badgeTone(), GetParam().tone);
    EXPECT_THAT(log(), Contains(GetParam().logged));
    EXPECT_THAT(texts(), Contains(GetParam().label));
    EXPECT_TRUE(shownWidgets<CompactDiskTable>(window()).empty());
}
INSTANTIATE_TEST_SUITE_P(Each, ScanTests, testing::ValuesIn(scans), nameOf);

}  // namespace tessel
