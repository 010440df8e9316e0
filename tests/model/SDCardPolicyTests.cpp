#include "model/SDCardPolicy.h"

#include <gmock/gmock.h>

#include "model/SystemWords.h"
#include "tests/support/SampleDisks.h"

namespace tessel {

namespace {

using Change = void (*)(SDWholeDisk& disk);

SDWholeDisk cardInReader(const std::string& id = "disk4", const std::string& name = "SD Card Reader",
                         uint64_t size = 32'000'000'000) {
    SDWholeDisk card = sampleCard(id, name, size);
    card.busProtocol = "USB";
    return card;
}

}  // namespace

TEST(SDCardPolicyTests, theFirstFailureIsTheReason) {
    SDWholeDisk candidate = {.id = "disk4s1", .mediaName = "Disk", .busProtocol = "SATA", .isInternal = true};
    const struct {
        std::string reason;
        Change repair;
    } steps[] = {
        {"Detailed disk information could not be read.", [](auto& disk) { disk.hasDetailedInfo = true; }},
        {"The item is not a whole-disk identifier.", [](auto& disk) { disk.id = "disk0"; }},
        {"disk0 is always protected.", [](auto& disk) { disk.id = "disk4"; }},
        {"The item is a partition rather than a whole disk.", [](auto& disk) { disk.isWhole = true; }},
        {"The disk is virtual or synthesized rather than physical media.",
         [](auto& disk) { disk.isPhysical = true; }},
        {"The media identity indicates an SSD, hard drive, NVMe device, or other fixed-drive class.",
         [](auto& disk) { disk.busProtocol = "USB"; }},
        {"The media name or bus protocol does not explicitly identify this device as an SD, SDHC, SDXC, "
         "microSD, or SD/MMC card.",
         [](auto& disk) { disk.mediaName = "SD Card"; }},
        {systemWords().cardNotWritable, [](auto& disk) { disk.isWritable = true; }},
        {"The SD card is smaller than 512 MB.", [](auto& disk) { disk.sizeBytes = maximumCardSize + 1; }},
        {"The SD card is larger than the current 512 GB safety limit.",
         [](auto& disk) { disk.sizeBytes = 32'000'000'000; }},
        {"The disk is internal fixed media rather than removable SD media.",
         [](auto& disk) { disk.isInternal.reset(); }},
        {"The SD card is not confirmed as external, removable, ejectable, or connected through a native SD "
         "interface.",
         [](auto& disk) { disk.isRemovable = true; }},
        {"", [](auto&) {}},
    };
    for (const auto& [reason, repair] : steps) {
        EXPECT_EQ(eligibilityFailureReason(candidate).value_or(""), reason);
        repair(candidate);
    }
}

TEST(SDCardPolicyTests, eligibleDisksAreListedFirst) {
    SDWholeDisk fixed = cardInReader("disk0", "Flash", 1);
    fixed.isInternal = true;
    fixed.isRemovable = fixed.isEjectable = false;
    SDWholeDisk locked = cardInReader("disk5");
    locked.isWritable = false;
    std::vector<SDWholeDisk> disks{fixed,
                                   cardInReader("disk6", "Stick", 1),
                                   locked,
                                   cardInReader("disk10"),
                                   cardInReader("disk9"),
                                   cardInReader("disk11", "SD Card Reader", 16'000'000'000)};
    sortForDisplay(disks);

    std::vector<std::string> order;
    for (const SDWholeDisk& disk : disks)
        order.push_back(disk.id);
    EXPECT_THAT(order, testing::ElementsAre("disk11", "disk9", "disk10", "disk5", "disk6", "disk0"));
}

TEST(SDCardPolicyTests, theSameDiskIsRecognizedByIdentifierSizeNameAndBus) {
    const struct {
        bool same;
        Change change;
    } cases[] = {
        {true,
         [](auto& disk) {
             disk.mediaName = " sd  CÄRD-Ｒeader!";
             disk.busProtocol = "usb";
         }},
        {true,
         [](auto& disk) {
             disk.partitions = {{.id = "disk4s1"}};
             disk.deviceLocation = "Elsewhere";
             disk.isWritable = false;
             disk.isInternal.reset();
             disk.systemName = "/dev/sdz";
         }},
        {false, [](auto& disk) { disk.mediaName = "SDCard Reader"; }},
        {false, [](auto& disk) { disk.mediaName = "SD Card Reader 2"; }},
        {false, [](auto& disk) { disk.busProtocol = "USB 3"; }},
        {false, [](auto& disk) { disk.sizeBytes += 512; }},
        {false, [](auto& disk) { disk.id = "disk04"; }},
    };
    for (const auto& one : cases) {
        SDWholeDisk changed = cardInReader();
        one.change(changed);
        EXPECT_EQ(isSameDisk(cardInReader(), changed), one.same) << "case " << &one - cases;
    }
}

}  // namespace tessel
