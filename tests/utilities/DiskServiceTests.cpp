#include <gmock/gmock.h>

#include <fstream>

#include "model/SDCardPolicy.h"
#include "tests/utilities/LinuxProgramsTest.h"

namespace tessel {

/// Runs the real disk service, which takes two loop devices for card readers and sees no other disk.
class DiskServiceTests : public LinuxProgramsTest {
  protected:
    void SetUp() override {
        if (!std::filesystem::exists(service)) GTEST_SKIP() << "needs udisks2";
        LinuxProgramsTest::SetUp();
        if (IsSkipped()) return;
        other.emplace(LoopDevice::Options{.file = mediumFile("other", mediumSizeInBytes)});
        makeRemovable(*other);
        for (const char* place : {"/run/udisks2", "/var/lib/udisks2", "/run/udev"}) {
            std::filesystem::create_directories(place);
            ASSERT_EQ(::mount("tmpfs", place, "tmpfs", 0, nullptr), 0);
            coveredFlags.emplace_back(place);
        }
        folder.writeScript("eject", "echo \"$@\" >>" + ejections().string());
    }
    void TearDown() override {
        udisks.reset();
        LinuxProgramsTest::TearDown();
    }

    /// Records the properties of a reader in udev's database.
    void describe(const LoopDevice& device, const std::string& serial,
                  const std::string& properties = "") const {
        const auto sysfs = "/sys/block" / device.path().filename();
        std::string deviceNumber = contentOf(sysfs / "dev");
        deviceNumber.pop_back();
        std::filesystem::create_directories("/run/udev/data");
        std::ofstream("/run/udev/data/b" + deviceNumber)
            << "S:disk/by-diskseq/" << contentOf(sysfs / "diskseq")
            << "I:1000000\nE:ID_BUS=usb\nE:ID_VENDOR=Generic\n"
            << "E:ID_MODEL=SD_Card\nE:ID_MODEL_ENC=SD\\x20Card\nE:ID_SERIAL=" << serial
            << "\nE:ID_DRIVE_EJECTABLE=1\n"
            << properties << "V:1\n";
    }
    void start() {
        // The service gets a view of its own of the kernel's lists, which holds only these two disks.
        const auto view = folder.path() / "view";
        std::filesystem::create_directories(view);
        for (const auto* device : {&*loop, &*other}) {
            const auto name = device->path().filename();
            std::filesystem::remove(view / name);
            std::filesystem::create_symlink(std::filesystem::canonical("/sys/block" / name), view / name);
        }
        const auto script = "for list in /sys/class/block /sys/block; do mount -t tmpfs none $list; cp -d " +
                            view.string() + "/* $list; done; PATH=" + folder.path().string() +
                            ":$PATH exec " + service + " --no-sigint >/dev/null 2>&1";
        udisks.emplace(
            std::vector<std::string>{"unshare", "--mount", "--propagation", "private", "sh", "-c", script});
        for (int attempt = 0; attempt < 100 && !info().hasDetailedInfo; ++attempt)
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    std::filesystem::path ejections() const { return folder.path() / "ejections"; }

    const std::string service = "/usr/libexec/udisks2/udisksd";
    std::optional<LoopDevice> other;
};

TEST_F(DiskServiceTests, theOtherReaderOfOneMakeIsNeverEjected) {
    describe(*loop, "one");
    describe(*other, "two");
    start();
    EXPECT_EQ(eject().errors, "");
    EXPECT_EQ(contentOf(ejections()), loop->path().string() + "\n") << "a reader that has a drive of its own";

    std::filesystem::remove(ejections());
    describe(*other, "one");
    start();
    EXPECT_EQ(eject().errors, "");
    const FileDescriptor writer = openReadWrite(other->path());
    ASSERT_TRUE(lockExclusively(writer.get()).isSuccess());
    EXPECT_EQ(eject().errors, "") << "while the other card is being written";
    EXPECT_FALSE(std::filesystem::exists(ejections()));
}

TEST_F(DiskServiceTests, theServicesWordAboutTheMediumVetoesEveryName) {
    const struct {
        const char* property;
        const char* name;
        bool isSDCard;
    } cases[] = {{"E:ID_DRIVE_FLASH_SD=1\nE:ID_DRIVE_MEDIA_FLASH_SD=1\n", "Generic SD Card", true},
                 {"E:ID_DRIVE_FLASH_CF=1\nE:ID_DRIVE_MEDIA_FLASH_CF=1\n", "CompactFlash Card", false},
                 {"E:ID_DRIVE_FLASH_MS=1\nE:ID_DRIVE_MEDIA_FLASH_MS=1\n", "Memory Stick", false},
                 {"", "Generic SD Card", true}};
    describe(*other, "two");
    for (const auto& [property, name, isSDCard] : cases) {
        describe(*loop, "one", property);
        start();
        EXPECT_EQ(info().mediaName, name);
        EXPECT_EQ(isRecognizedSDCard(info()), isSDCard);
    }
}

}  // namespace tessel
