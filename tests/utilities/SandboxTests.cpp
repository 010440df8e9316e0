// diskutil and authopen in namespaces such as sandboxes and containers make, which hide who uses a disk.

#include <gmock/gmock.h>

#include "tests/utilities/LinuxProgramsTest.h"

namespace tessel {

using testing::HasSubstr;

class SandboxTests : public LinuxProgramsTest {
  protected:
    using Words = std::vector<std::string>;

    /// Returns the command that runs a program behind these words, which lead into a sandbox.
    static Command inside(Words sandbox, const std::string& program, const Words& arguments = {}) {
        sandbox.push_back(program);
        sandbox.insert(sandbox.end(), arguments.begin(), arguments.end());
        return {.executable = "/usr/bin/unshare", .arguments = sandbox};
    }

    /// Returns the words that lead into a sandbox with a root of its own, where it has these folders.
    Words ownRoot(const std::string& folders) const {
        const auto root = folder.path() / "root";
        std::filesystem::create_directories(root);
        Words words = ownProcesses;
        words.insert(words.end(),
                     {"sh", "-c",
                      "root=$0; mount -t tmpfs none $root; for folder in " + folders +
                          "; do [ ! -e $folder ] || { mkdir -p $root$folder && "
                          "mount --rbind $folder $root$folder; }; done; exec chroot $root \"$@\"",
                      root.string()});
        return words;
    }

    const Words ownUsers{"--user", "--map-root-user"};
    const Words ownProcesses{"--user", "--map-root-user", "--pid", "--fork", "--mount", "--mount-proc"};
    const std::string system = "/usr /bin /lib /lib64 /dev /proc /sys " + programs.string();
};

TEST_F(SandboxTests, nothingCanBeChosen) {
    if (UtilityRun::ofDiskUtility(inside(ownProcesses, "true")).status != 0)
        GTEST_SKIP() << "needs user namespaces";
    ASSERT_TRUE(info().isWritable);

    const std::pair<Words, const char*> sandboxes[] = {
        {ownUsers, "Start the program on the computer itself, outside any container or sandbox."},
        {ownProcesses, "Start the program on the computer itself, outside any container or sandbox."},
        {ownRoot(system + " " + folder.path().string()),
         "the system runs from, as in a container or sandbox."},
    };
    for (const auto& [sandbox, sentence] : sandboxes) {
        const auto list =
            UtilityRun::ofDiskUtility(inside(sandbox, programs / "diskutil", {"list", "-plist"}));
        const auto disks = parseDiskList(list.output).identifiers;
        EXPECT_THAT(disks, testing::Contains(identifier)) << list.errors;
        for (const std::string& disk : disks) {
            const auto details = UtilityRun::ofDiskUtility(
                inside(sandbox, programs / "diskutil", {"info", "-plist", "/dev/" + disk}));
            const SDWholeDisk record = parseDiskInfo(details.output, disk, nullptr).value();
            EXPECT_FALSE(record.isWritable) << disk;
            if (disk == identifier) {
                EXPECT_THAT(record.protectionReason.value_or(""), HasSubstr(sentence));
            }
        }
        const UtilityRun opening = UtilityRun::ofAuthorizationUtility(
            inside(sandbox, programs / "authopen", {"-stdoutpipe", "-o", "2", "/dev/r" + identifier}));
        EXPECT_EQ(opening.received.outcome, ReceivedDescriptor::Outcome::closed);
        EXPECT_THAT(opening.errors, HasSubstr(sentence));
    }
    EXPECT_THAT(calls(), testing::ElementsAre("ready"));

    const auto withoutBus =
        UtilityRun::ofDiskUtility(inside(ownRoot(system), programs / "diskutil", {"list", "-plist"}));
    EXPECT_EQ(withoutBus.status, 1);
    EXPECT_THAT(withoutBus.errors, HasSubstr("In a container or sandbox it can't be reached."));
}

}  // namespace tessel
