#include "services/DiskService.h"

#include <gmock/gmock.h>
#include <stdlib.h>

#include <sstream>

#include "foundation/Errors.h"
#include "foundation/SystemWords.h"
#include "foundation/Text.h"
#include "model/SDCardPolicy.h"
#include "model/TesselError.h"
#include "platform/RunLoop.h"
#include "platform/concurrency/Background.h"
#include "rehearsal/StandardMachine.h"
#include "tests/support/OpenResources.h"
#include "tests/support/TemporaryFolder.h"

namespace tessel {

namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::Pair;

const auto loop = std::make_shared<RunLoop>();

constexpr const char* changed =
    "The selected disk changed after it was scanned. Refresh the disk list and select it again.";
constexpr const char* threeAttempts = "list info list info list info";

/// What every script can use: it logs its command, counts how often it was run and reports when two run at
/// once. `list` and `card` print property lists, `$asked` is such as "info disk4 2" for the second run.
constexpr std::string_view prelude = R"script(
mkdir "$0.running" || echo "two commands at once" >> "$0.log"
trap 'rmdir "$0.running"' EXIT
[ "$LC_ALL" = C ] || exit 99
echo "$*" >> "$0.log"
asked="$1${3:+ ${3#/dev/}} $(grep -cxF -- "$*" "$0.log")"

list() {
    echo '<plist version="1.0"><dict><key>WholeDisks</key><array>'
    printf '<string>%s</string>' "$@"
    echo '</array></dict></plist>'
}

card() {
    cat <<END
<plist version="1.0"><dict>
    <key>DeviceIdentifier</key> <string>disk4</string>
    <key>MediaName</key> <string>${name:-SDXC Reader}</string>
    <key>TotalSize</key> <integer>${size:-32000000000}</integer>
    <key>BusProtocol</key> <string>USB</string>
    <key>Internal</key> <false/>
    <key>VirtualOrPhysical</key> <string>Physical</string>
    <key>WritableMedia</key> <${writable:-true}/>
</dict></plist>
END
}

array='<plist version="1.0"><array/></plist>'
)script";

/// A disk utility made of a script that chooses its answer by `$asked`.
class ScriptedUtility {
  public:
    explicit ScriptedUtility(const std::string& answers) {
        folder.writeScript("diskutil", std::string(prelude) + "case $asked in\n" + answers + "\nesac");
    }

    DiskService service() const { return DiskService({.diskUtility = program}); }

    std::vector<std::string> commands() const {
        std::istringstream log(contentOf(program.string() + ".log"));
        std::vector<std::string> lines;
        for (std::string line; std::getline(log, line);)
            lines.push_back(line);
        return lines;
    }

    /// "list info" for a list command followed by an info command.
    std::string commandNames() const {
        std::vector<std::string> names;
        for (const auto& command : commands())
            names.push_back(command.substr(0, command.find(' ')));
        return joined(names, " ");
    }

    bool isRunning() const { return std::filesystem::exists(program.string() + ".running"); }

  private:
    TemporaryFolder folder;
    std::filesystem::path program = folder.path() / "diskutil";
};

SDWholeDisk selectedCard() {
    return {.id = "disk4", .mediaName = "sdxc reader", .sizeBytes = 32'000'000'000, .busProtocol = "USB"};
}

/// The description of the error that the task ended with; empty for none.
template <typename T>
std::string failureOf(Task<T> task, const std::stop_source& cancellation = {}) {
    try {
        runUntilFinished(loop, std::move(task), cancellation);
        return {};
    } catch (...) {
        return localizedDescription(std::current_exception());
    }
}

class DiskServiceTests : public LeavesNothingOpen {};

}  // namespace

TEST_F(DiskServiceTests, aScanAsksForOneDiskAfterAnotherAndListsTheUnreadableOnes) {
    const ScriptedUtility utility(R"script(
        list*) cat <<END
<plist version="1.0"><dict><key>WholeDisks</key>
    <array><string>disk10</string><string>disk0</string><string>disk4</string><string>disk7</string></array>
    <key>AllDisksAndPartitions</key><array><dict>
        <key>DeviceIdentifier</key><string>disk5</string> <key>Content</key><string>FDisk</string>
        <key>Size</key><integer>5000</integer> <key>Internal</key><true/>
        <key>Partitions</key><array><dict>
            <key>DeviceIdentifier</key><string>disk5s1</string> <key>Size</key><integer>400</integer>
        </dict></array>
    </dict></array>
</dict></plist>
END
            ;;
        'info disk4 '*) sleep 0.1; card ;;
        'info disk5 '*) card; exit 1 ;;
        'info disk7 '*) echo rubbish ;;
        'info disk10 '*) echo "$array" ;;
        *) rmdir "$0.running"; kill -KILL $$ ;;)script");
    const auto disks = runUntilFinished(loop, utility.service().scanDisks());

    EXPECT_THAT(utility.commands(),
                ElementsAre("list -plist", "info -plist /dev/disk0", "info -plist /dev/disk4",
                            "info -plist /dev/disk5", "info -plist /dev/disk7", "info -plist /dev/disk10"));
    const auto unreadable = [](const std::string& id) { return DiskService::placeholderDisk(id, nullptr); };
    const DiskLayout knownLayout{.partitionScheme = "FDisk",
                                 .partitions = {{.id = "disk5s1", .sizeBytes = 400}},
                                 .sizeBytes = 5000,
                                 .isInternal = true};
    ASSERT_EQ(disks.size(), 5U);
    EXPECT_EQ(disks[0].mediaName, "SDXC Reader");
    EXPECT_EQ(eligibilityFailureReason(disks[0]), std::nullopt);
    EXPECT_EQ(disks[1], unreadable("disk0"));
    EXPECT_EQ(disks[2], unreadable("disk7"));
    EXPECT_EQ(disks[3], unreadable("disk10"));
    EXPECT_EQ(disks[4], DiskService::placeholderDisk("disk5", &knownLayout));
}

TEST_F(DiskServiceTests, aPlaceholderTellsWhatTheListKnewAndIsRefused) {
    const DiskLayout internal{.sizeBytes = 5000, .isInternal = true};
    const DiskLayout external{.isInternal = false};
    const DiskLayout unknown{.partitionScheme = "GUID", .partitions = {{.id = "disk3s1"}}};
    const struct {
        const DiskLayout* layout;
        const char* location;
    } cases[] = {
        {nullptr, "Unknown"}, {&internal, "Internal"}, {&external, "External"}, {&unknown, "Unknown"}};
    for (const auto& [layout, location] : cases) {
        const auto disk = DiskService::placeholderDisk("disk3", layout);
        const auto known = layout ? *layout : DiskLayout();
        EXPECT_EQ(disk, (SDWholeDisk{.id = "disk3",
                                     .mediaName = "Disk disk3",
                                     .sizeBytes = known.sizeBytes.value_or(0),
                                     .busProtocol = "Unknown bus",
                                     .deviceLocation = location,
                                     .partitionScheme = known.partitionScheme,
                                     .partitions = known.partitions,
                                     .isInternal = known.isInternal,
                                     .isWhole = true}));
        EXPECT_EQ(eligibilityFailureReason(disk), "Detailed disk information could not be read.");
    }
}

TEST_F(DiskServiceTests, aScanFailsOnlyWithItsList) {
    const struct {
        const char* what;
        const char* answers;
        const char* failure;
    } cases[] = {
        {"no disks", "*) list ;;", ""},
        {"silent", "*) exit 1 ;;", "diskutil list failed."},
        {"own words", "*) echo out; echo err >&2; exit 1 ;;", "out\nerr"},
        {"killed", "*) list disk4; kill -KILL $$ ;;", nullptr},
        {"no dictionary", "*) echo \"$array\" ;;",
         "diskutil returned an unexpected property-list structure."},
    };
    for (const auto& [what, answers, failure] : cases) {
        SCOPED_TRACE(what);
        const ScriptedUtility utility(answers);
        const auto actual = failureOf(utility.service().scanDisks());
        if (failure) {
            EXPECT_EQ(actual, failure);
        } else {
            EXPECT_NE(actual, "");
        }
        EXPECT_EQ(utility.commandNames(), "list");
    }
    EXPECT_THROW(runUntilFinished(loop, ScriptedUtility("*) echo rubbish ;;").service().scanDisks()),
                 PlatformError);
    EXPECT_THROW(runUntilFinished(loop, DiskService({.diskUtility = "/no/such/utility"}).scanDisks()),
                 PlatformError);
}

TEST_F(DiskServiceTests, aRevalidationTriesAgainOnlyWhereThatMayHelp) {
    const struct {
        const char* what;
        const char* answers;
        std::string failure;
        const char* commands;
    } cases[] = {
        {"still there", "list*) list disk0 disk4 ;; *) card ;;", "", "list info"},
        {"missing", "list*) list disk0 disk40 ;; *) card ;;", changed, "list list list"},
        {"other size", "list*) list disk4 ;; *) size=64000000000; card ;;", changed, threeAttempts},
        {"other name", "list*) list disk4 ;; *) name='SDHC Reader'; card ;;", changed, threeAttempts},
        {"other card, read-only", "list*) list disk4 ;; *) size=1 writable=false; card ;;", changed,
         threeAttempts},
        {"back at the second", "'list 1') list ;; list*) list disk4 ;; *) card ;;", "", "list list info"},
        {"readable at the third attempt",
         "list*) list disk4 ;; *1) card; exit 1 ;; *2) echo rubbish ;; *) card ;;", "", threeAttempts},
        {"no details", "list*) list disk4 ;; *) echo \"$array\" ;;", changed, threeAttempts},
        {"unreadable list", "*) echo rubbish ;;", changed, "list list list"},
        {"failing list", "*) echo 'No disks today.' >&2; exit 1 ;;", "No disks today.", "list"},
        {"failing list after a missing disk", "*1) list ;; *) exit 1 ;;", "diskutil list failed.",
         "list list"},
        {"list without dictionary", "*) echo \"$array\" ;;",
         "diskutil returned an unexpected property-list structure.", "list"},
        {"read-only now", "list*) list disk4 ;; *) writable=false; card ;;",
         "The selected disk is protected: " + systemWords().cardNotWritable, "list info"},
    };
    for (const auto& [what, answers, failure, commands] : cases) {
        SCOPED_TRACE(what);
        const ScriptedUtility utility(answers);
        const auto begin = std::chrono::steady_clock::now();
        EXPECT_EQ(failureOf(utility.service().revalidateDisk(selectedCard())), failure);
        const auto duration = std::chrono::steady_clock::now() - begin;
        EXPECT_EQ(utility.commandNames(), commands);
        EXPECT_GE(duration, 200ms * (std::ranges::count(utility.commands(), "list -plist") - 1));
    }
}

TEST_F(DiskServiceTests, aCancelledRevalidationRunsNoFurtherCommand) {
    enum class Moment { beforeStart, inCommand, inPause };
    const struct {
        const char* what;
        const char* answers;
        Moment moment;
        const char* commands;  ///< those that have begun when it is cancelled
    } cases[] = {
        {"before it starts", "list*) list disk4 ;; *) card ;;", Moment::beforeStart, ""},
        {"while it lists", "list*) sleep 0.3; list ;;", Moment::inCommand, "list"},
        {"while it reads details", "list*) list disk4 ;; *) sleep 0.3; card ;;", Moment::inCommand,
         "list info"},
        {"while it reads details of a card that is no longer eligible",
         "list*) list disk4 ;; *) sleep 0.3; writable=false; card ;;", Moment::inCommand, "list info"},
        {"in the pause", "list*) list ;;", Moment::inPause, "list"},
    };
    const auto cancelAt = [](Moment moment, const ScriptedUtility& utility, std::string commands,
                             std::stop_source cancellation) -> Task<> {
        while (utility.commandNames() != commands || (moment == Moment::inPause && utility.isRunning()))
            co_await sleepFor(1ms);
        if (moment == Moment::inPause) co_await sleepFor(50ms);
        cancellation.request_stop();
    };
    for (const auto& [what, answers, moment, commands] : cases) {
        SCOPED_TRACE(what);
        const ScriptedUtility utility(answers);
        const std::stop_source cancellation;
        startTask(loop, cancelAt(moment, utility, commands, cancellation));
        EXPECT_EQ(failureOf(utility.service().revalidateDisk(selectedCard()), cancellation),
                  CancellationError().what());
        EXPECT_EQ(utility.commandNames(), commands);
    }
}

TEST_F(DiskServiceTests, theStandardMachineOffersItsCardsFirst) {
    const TemporaryFolder folder;
    SimulatedReader reader(folder.path() / "reader", TESSEL_SIMULATED_PROGRAMS);
    addStandardMachine(reader);
    std::vector<std::pair<std::string, std::optional<std::string>>> verdicts;
    for (const auto& disk : runUntilFinished(loop, DiskService(reader.utilities()).scanDisks()))
        verdicts.emplace_back(disk.id, eligibilityFailureReason(disk));

    const std::string fixedDrive =
        "The media identity indicates an SSD, hard drive, NVMe device, or other fixed-drive class.";
    EXPECT_THAT(verdicts,
                ElementsAre(Pair("disk4", std::nullopt), Pair("disk5", std::nullopt),
                            Pair("disk2", "The disk is virtual or synthesized rather than physical media."),
                            Pair("disk7",
                                 "The media name or bus protocol does not explicitly identify this device as "
                                 "an SD, SDHC, SDXC, microSD, or SD/MMC card."),
                            Pair("disk6", fixedDrive), Pair("disk0", "disk0 is always protected.")));
}

}  // namespace tessel
