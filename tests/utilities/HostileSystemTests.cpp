// Writes with the real utilities that other programs and the hardware disturb.

#include <gmock/gmock.h>
#include <linux/loop.h>
#include <sys/ioctl.h>

#include <future>

#include "tests/utilities/LinuxProgramsTest.h"

namespace tessel {

using testing::HasSubstr;

/// Disturbs a write in progress as a system may do.
class HostileSystemTests : public MountedDiskTest {
  protected:
    /// Writes two chunks and calls the function between them. Returns the text of the error, or nothing.
    std::string writeWhile(const std::function<void()>& happening) const {
        return write(16 << 20, [&happening](ImageWriteProgress report) {
            const bool isBetweenChunks = report.completedBytes > 0 && report.fractionCompleted() < 1;
            if (report.phase == ImageWritePhase::writingImage && isBetweenChunks) happening();
        });
    }
};

TEST_F(HostileSystemTests, aCardThatIsPulledEndsTheWriteAndIsLetGo) {
    const auto pull = [this] {
        std::filesystem::resize_file(folder.path() / "medium", 0);
        ioctl(openReadWrite(loop->path()).get(), LOOP_SET_CAPACITY, 0);
    };
    EXPECT_THAT(writeWhile(pull), HasSubstr("The SD-card write did not complete at byte offset 8388608: "));
    EXPECT_TRUE(openReadWrite(loop->path(), O_EXCL).isOpen());
}

TEST_F(HostileSystemTests, aProgramThatWritesToTheCardEndsTheWrite) {
    const auto sentence = "Another program is writing to this card.";
    const auto scribble = [this] {
        const FileDescriptor other = openReadWrite(loop->path());
        ASSERT_EQ(pwrite(other.get(), "scribble", 8, 32 << 20), 8);
        ASSERT_EQ(fsync(other.get()), 0);
    };
    EXPECT_EQ(writeWhile(scribble), sentence);

    startUDisks("scribble=yes\n");
    EXPECT_EQ(authopen().errors, sentence + std::string("\n")) << "while the user is asked";
}

TEST_F(HostileSystemTests, aSecondCopyLeavesTheCardAlone) {
    const auto meddle = [this] {
        for (const UtilityRun& run : {unmount(), authopen(), eject()})
            EXPECT_THAT(run.errors, HasSubstr("Resource busy"));
    };
    EXPECT_EQ(writeWhile(meddle), "");
    EXPECT_TRUE(holdsImage());
    EXPECT_THAT(calls(), testing::Not(testing::Contains(HasSubstr("eject"))));
    EXPECT_EQ(eject().status, 0) << "nobody is writing any more";
}

TEST_F(HostileSystemTests, silenceEndsWithASentence) {
    for (const auto* companion : {&*bus, &*udisks}) {
        companion->pause();
        EXPECT_EQ(diskutil({"list", "-plist"}).errors,
                  "The disk service UDisks2 did not answer. Try again.\n");
        companion->resume();
    }
}

TEST_F(HostileSystemTests, udisksMayStopWhileThePersonIsAsked) {
    startUDisks("open=Silence\n");
    auto opening = std::async(std::launch::async, [this] { return authopen(); });
    while (calls().size() < 2)
        std::this_thread::yield();
    udisks.reset();
    EXPECT_EQ(opening.get().errors, "The disk service UDisks2 did not answer. Try again.\n");
}

}  // namespace tessel
