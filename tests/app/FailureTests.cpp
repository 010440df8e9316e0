#include "tests/app/WindowTest.h"
#include "views/disks/CompactDiskTable.h"

namespace tessel {

namespace {

using testing::Contains;
using testing::IsSupersetOf;
using Deeds = std::vector<std::string>;

/// What goes wrong once the alert is open, and what the window then shows.
struct FailedWrite {
    const char* name;
    void (*arrange)(SimulatedReader& reader);
    const char* title;
    const char* detail;
    const char* logged;  ///< beside the error itself
    Deeds deeds;
    const char* badge = "Image write failed";
    Tone tone = Tone::red;
    bool staysListed = true;
};

const FailedWrite failedWrites[] = {
    {.name = "dismissedPrompt",
     .arrange = [](auto& reader) { reader.setBehaviour("disk4", {.authorization = "dismissed"}); },
     .title = "Operation Cancelled",
     .detail = "Writing was interrupted. The SD card may contain incomplete or invalid data and was ejected "
               "when possible.",
     .logged = "Refresh the disk list before attempting another write.",
     .deeds = {"unmountDisk", "authopen", "eject"},
     .badge = "Operation cancelled",
     .tone = Tone::orange,
     .staysListed = false},
    {.name = "busy",
     .arrange = [](auto& reader) { reader.setBehaviour("disk4", {.authorization = "busy"}); },
     .title = "Authorizing Raw Device Failed",
     .detail = "The SD card is still in use by another process. Close applications using the card, refresh "
               "the disk list, and try again.",
     .logged = "Requesting authorized access to the raw SD-card device.",
     .deeds = {"unmountDisk", "authopen", "eject"}},
    {.name = "cardExchanged",
     .arrange = [](auto& reader) { reader.changeDetails("disk4", {{"MediaName", "Other Card"}}); },
     .title = "Image Write Failed",
     .detail = "The selected disk changed after it was scanned. Refresh the disk list and select it again.",
     .logged = "Disk revalidation mismatch. Expected identifier=disk4, media=SDHC Card, bus=USB, "
               "size=600000000; observed identifier=disk4, media=Other Card, bus=USB, size=600000000.",
     .deeds = {}},
};

void PrintTo(const FailedWrite& write, std::ostream* stream) {
    *stream << write.name;
}

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

const Scan scans[] = {
    {"findsNothing",
     [](auto& reader) {
         for (const char* disk : {"disk0", "disk4", "disk5", "disk7"})
             reader.removeDisk(disk);
     },
     "No whole disks found", Tone::orange,
     "Linux returned no whole-disk identifiers. Confirm that the disk service (UDisks2) is running and "
     "press Refresh Disks again.",
     "No whole disks are available. Insert an SD card and refresh the list."},
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

void PrintTo(const Scan& scan, std::ostream* stream) {
    *stream << scan.name;
}

class ScanTests : public WindowTest, public testing::WithParamInterface<Scan> {};

constexpr auto nameOf = [](const auto& info) { return std::string(info.param.name); };

}  // namespace

TEST_P(FailedWriteTests, isShownAndLogged) {
    openReady();
    click(button("Write Disk Image"));
    GetParam().arrange(reader);
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
