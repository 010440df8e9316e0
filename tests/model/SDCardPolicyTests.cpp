#include "model/SDCardPolicy.h"

#include <gmock/gmock.h>

#include "model/SystemWords.h"
#include "tests/support/SampleDisks.h"

namespace tessel {

namespace {

using Change = void (*)(SDWholeDisk& disk);

SDWholeDisk cardInReader() {
    SDWholeDisk card = sampleCard("disk4", "SD Card Reader");
    card.busProtocol = "USB";
    return card;
}

SDWholeDisk changed(Change change) {
    SDWholeDisk disk = cardInReader();
    change(disk);
    return disk;
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
    enum { fixed, stick, locked, tenth, ninth, small };
    std::vector<SDWholeDisk> disks(6, cardInReader());
    const char* identifiers[] = {"disk0", "disk6", "disk5", "disk10", "disk9", "disk11"};
    for (size_t i = 0; i < disks.size(); ++i)
        disks[i].id = identifiers[i];
    disks[fixed].mediaName = "Flash";
    disks[fixed].isInternal = true;
    disks[fixed].isRemovable = disks[fixed].isEjectable = false;
    disks[stick].mediaName = "Stick";
    disks[fixed].sizeBytes = disks[stick].sizeBytes = 1;
    disks[locked].isWritable = false;
    disks[small].sizeBytes = 16'000'000'000;
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
        EXPECT_EQ(isSameDisk(cardInReader(), changed(one.change)), one.same) << "case " << &one - cases;
    }
}

}  // namespace tessel
