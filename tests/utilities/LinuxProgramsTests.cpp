// diskutil and authopen as installed, on a loop device and with a stand-in for UDisks2.

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <fstream>

#include "tests/utilities/LinuxProgramsTest.h"

namespace tessel {

using testing::Contains;
using testing::HasSubstr;

namespace {

/// Returns a catalog of translations in the format of GNU gettext, with one text in it.
std::string catalogOf(const std::string& text, const std::string& translation) {
    constexpr uint32_t textEntry = 28, translationEntry = 36, content = 44;
    const auto textLength = static_cast<uint32_t>(text.size());
    const auto translationLength = static_cast<uint32_t>(translation.size());
    const uint32_t header[] = {0x950412de, 0, 1, textEntry, translationEntry, 0, 0};
    const uint32_t entries[] = {textLength, content, translationLength, content + textLength + 1};
    return std::string(reinterpret_cast<const char*>(header), sizeof header) +
           std::string(reinterpret_cast<const char*>(entries), sizeof entries) + text + '\0' + translation +
           '\0';
}

}  // namespace

class LinuxProgramsTests : public LinuxProgramsTest {};

TEST_F(LinuxProgramsTests, withoutUDisksTheySayWhatIsMissing) {
    udisks.reset();
    const UtilityRun withBus = authopen();
    bus.reset();
    const UtilityRun withoutBus = diskutil({"list", "-plist"});
    for (const auto* run : {&withBus, &withoutBus}) {
        EXPECT_EQ(run->status, 1);
        EXPECT_THAT(run->errors, HasSubstr("UDisks2 is not running"));
    }
}

TEST_F(LinuxProgramsTests, theDiskIsListedUnderTheKernelsNumber) {
    const DiskList list = parseDiskList(diskutil({"list", "-plist"}).output);
    EXPECT_THAT(list.identifiers, Contains(identifier));
    const SDWholeDisk disk = info();
    EXPECT_EQ(disk.mediaName, "Generic SD Card");
    EXPECT_EQ(disk.sizeBytes, mediumSizeInBytes);
    EXPECT_EQ(disk.deviceLocation, "Internal (" + loop->path().string() + ")");
    EXPECT_FALSE(disk.isPhysical);
    EXPECT_TRUE(disk.isWritable);
    EXPECT_EQ(diskutil({"info", "-plist", "/dev/disk999999"}).errors, "Could not find disk: disk999999.\n");
}

TEST_F(LinuxProgramsTests, theDescriptorIsThatOfTheDisk) {
    const UtilityRun run = authopen();
    ASSERT_EQ(run.received.outcome, ReceivedDescriptor::Outcome::received) << run.errors;
    EXPECT_EQ(run.status, 0);
    const int descriptor = run.received.descriptor.get();
    EXPECT_EQ(diskSequenceNumber(descriptor).value, number);
    EXPECT_EQ(fcntl(descriptor, F_GETFL) & (O_ACCMODE | O_DIRECT), O_RDWR | O_DIRECT);
    EXPECT_EQ(fcntl(descriptor, F_GETFD) & FD_CLOEXEC, FD_CLOEXEC);
    EXPECT_FALSE(openReadWrite(loop->path(), O_EXCL).isOpen());
    EXPECT_FALSE(lockExclusively(openReadWrite(loop->path()).get()).isSuccess());
}

TEST_F(LinuxProgramsTests, refusalsArriveAsWhatTheyAre) {
    constexpr auto notHandedOver =
        "The authorized raw-device open failed: The disk service UDisks2 did not hand over what it opened.";
    const struct {
        const char* error;
        const char* message;
        const char* sentence;
    } refusals[] = {
        {"NotAuthorizedDismissed", "The authentication dialog was dismissed",
         "The administrator-authorized operation was cancelled."},
        {"NotAuthorized", "Not authorized to perform operation",
         "The authorized raw-device open failed: Not authorized to perform operation. Authentication failed "
         "or was cancelled, or the polkit rules of this computer forbid it. If no dialog was shown, start "
         "the polkit agent of your desktop, such as lxpolkit, and try again."},
        {"NotAuthorizedCanObtain", "Not authorized to perform operation",
         "The authorized raw-device open failed: Not authorized to perform operation. Nobody could be asked, "
         "because no authentication agent is running in this session. Start the polkit agent of your "
         "desktop, such as lxpolkit, and try again."},
        {"DeviceBusy", "It is in use",
         "The SD card is still in use by another process. Close applications using the card, refresh the "
         "disk list, and try again."},
        {"Failed", "The reader burns", "The authorized raw-device open failed: The reader burns"},
        {"", "\nplace=-1", notHandedOver},
        {"", "\nplace=1", notHandedOver},
    };
    for (const auto& [error, message, sentence] : refusals) {
        startUDisks("open=" + std::string(error) + "\nmessage=" + message + "\n");
        const UtilityRun run = authopen();
        EXPECT_EQ(run.status, 1);
        const std::string text = run.errors.substr(0, run.errors.find_last_not_of('\n') + 1);
        EXPECT_EQ(authorizationFailure(text).localizedDescription(), sentence);
    }
}

TEST_F(LinuxProgramsTests, whatUDisksSaysOfAnotherMediumIsNotBelieved) {
    for (const auto& known : {std::to_string(number + 1), std::to_string(number) + "-part1"}) {
        startUDisks("", known);
        EXPECT_FALSE(info().isWritable);
        EXPECT_THAT(authopen().errors, HasSubstr("is protected"));
        EXPECT_NE(eject().status, 0);
        EXPECT_THAT(calls(), testing::ElementsAre("ready"));
    }
}

TEST_F(LinuxProgramsTests, theSystemsDiskIsNeverTouched) {
    identifier = "disk0";
    EXPECT_FALSE(info().isRemovable || info().isEjectable);
    EXPECT_EQ(authopen().status, 1);
    EXPECT_EQ(unmount().status, 1);
    EXPECT_EQ(eject().status, 1);
    EXPECT_THAT(calls(), testing::ElementsAre("ready"));
}

TEST_F(LinuxProgramsTests, ejectingSucceedsOrSaysWhyNot) {
    const struct {
        const char* error;
        int status;
    } cases[] = {{"", 0},
                 {"Failed", 0},
                 {"NotAuthorized", 0},
                 {"NotAuthorizedCanObtain", 0},
                 {"NotAuthorizedDismissed", 1},
                 {"OptionNotPermitted", 1}};
    for (const auto& [error, status] : cases) {
        startUDisks("eject=" + std::string(error) + "\nmessage=no\n");
        EXPECT_EQ(eject().status, status) << error;
        EXPECT_THAT(calls(), Contains("eject " + loop->path().filename().string()));
    }
}

TEST_F(LinuxProgramsTests, aBusyReaderIsRecognizedInTheLanguageOfTheService) {
    // The C library looks for its own texts there, even those of a locale that it contains.
    const std::filesystem::path translations = "/usr/share/locale";
    ASSERT_EQ(::mount("tmpfs", translations.c_str(), "tmpfs", 0, nullptr), 0);
    coveredFlags.push_back(translations);
    std::filesystem::create_directories(translations / "xx/LC_MESSAGES");
    std::ofstream(translations / "xx/LC_MESSAGES/libc.mo", std::ios::binary)
        << catalogOf("Device or resource busy", "Ledig ist es nicht");
    // A copy, since newer C libraries translate nothing in a locale that is called C.UTF-8.
    const std::filesystem::path locales = folder.path() / "locales";
    std::filesystem::create_directory(locales);
    std::filesystem::copy("/usr/lib/locale/C.utf8", locales / "xx.utf8",
                          std::filesystem::copy_options::recursive);
    setenv("LOCPATH", locales.c_str(), 1);
    setenv("LANG", "xx.UTF-8", 1);
    startUDisks("eject=Failed\nmessage=eject: Ledig ist es nicht\n");
    EXPECT_THAT(eject().errors, HasSubstr("Resource busy"));
}

TEST_F(LinuxProgramsTests, aLoopDeviceOrALockedRangeProtectsWhatItLiesOn) {
    {
        const LoopDevice above({.file = loop->path()});
        EXPECT_FALSE(info().isWritable);
        EXPECT_THAT(authopen().errors, HasSubstr("is used by a loop device"));
        EXPECT_THAT(unmount().errors, HasSubstr("is used by a loop device"));
    }
    const FileDescriptor server = openReadWrite(loop->path());
    struct flock range{.l_type = F_RDLCK, .l_whence = SEEK_SET, .l_start = 100, .l_len = 1};
    ASSERT_EQ(fcntl(server.get(), F_OFD_SETLK, &range), 0);
    EXPECT_THAT(authopen().errors, HasSubstr("Resource busy: another program"));
    EXPECT_THAT(calls(), testing::ElementsAre("ready"));
}

TEST_F(LinuxProgramsTests, aLockThroughAnotherDeviceNodeIsSeen) {
    struct stat status{};
    ASSERT_EQ(stat(loop->path().c_str(), &status), 0);
    const auto locked = folder.path() / "locked";
    // A system virtual machine has a /dev of its own, and its node there is another file.
    const Companion container(
        {"unshare", "-m", "--propagation", "private", "sh", "-c",
         "mount -t tmpfs none /dev && mknod /dev/card b " + std::to_string(major(status.st_rdev)) + " " +
             std::to_string(minor(status.st_rdev)) + " && exec flock --no-fork /dev/card sh -c 'touch " +
             locked.string() + "; exec sleep 60'"});
    ASSERT_TRUE(appears(locked));
    EXPECT_EQ(authopen().errors, "Resource busy: another program is working on " + identifier + ".\n");
    EXPECT_THAT(calls(), testing::ElementsAre("ready"));
}

TEST_F(LinuxProgramsTests, aRangeThatIsLockedWhileTheUserIsAskedIsNotTakenForItsOwn) {
    startUDisks("lock=100\n");
    EXPECT_THAT(authopen().errors, HasSubstr("Resource busy: another program"));
}

TEST_F(LinuxProgramsTests, aCardThatIsNotRemovableIsProtected) {
    TearDown();
    for (const UtilityRun& run : {authopen(), unmount(), eject()})
        EXPECT_THAT(run.errors, HasSubstr("is protected: it is not a removable medium."));
}

}  // namespace tessel
