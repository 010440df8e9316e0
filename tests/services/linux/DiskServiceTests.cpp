#include "services/DiskService.h"

#include <gmock/gmock.h>

#include <sstream>

#include "model/SDCardPolicy.h"
#include "platform/RunLoop.h"
#include "tests/support/OpenResources.h"
#include "tests/support/TemporaryFolder.h"

namespace tessel {

namespace {

using testing::ElementsAre;

const auto loop = std::make_shared<RunLoop>();

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

  private:
    TemporaryFolder folder;
    std::filesystem::path program = folder.path() / "diskutil";
};

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

}  // namespace tessel
