#include "model/SDCardPolicy.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "foundation/SystemWords.h"

namespace tessel {

namespace {

using Change = void (*)(SDWholeDisk& disk);

SDWholeDisk cardInReader() {
    return {
        .id = "disk4",
        .mediaName = "SD Card Reader",
        .sizeBytes = 32'000'000'000,
        .busProtocol = "USB",
        .deviceLocation = "External",
        .isInternal = false,
        .isWhole = true,
        .isRemovable = true,
        .isEjectable = true,
        .isWritable = true,
        .isPhysical = true,
        .hasDetailedInfo = true,
    };
}

SDWholeDisk changed(Change change) {
    SDWholeDisk disk = cardInReader();
    change(disk);
    return disk;
}

constexpr const char* notAnIdentifier = "The item is not a whole-disk identifier.";
constexpr const char* fixedDrive =
    "The media identity indicates an SSD, hard drive, NVMe device, or other fixed-drive class.";
constexpr const char* notRecognized =
    "The media name or bus protocol does not explicitly identify this device as an SD, SDHC, SDXC, microSD, "
    "or SD/MMC card.";
constexpr const char* tooSmall = "The SD card is smaller than 512 MB.";
constexpr const char* tooLarge = "The SD card is larger than the current 512 GB safety limit.";
constexpr const char* internalMedia = "The disk is internal fixed media rather than removable SD media.";
constexpr const char* notConfirmed =
    "The SD card is not confirmed as external, removable, ejectable, or connected through a native SD "
    "interface.";
constexpr const char* eligible = "";

}  // namespace

TEST(SDCardPolicyTests, theFirstFailureIsTheReason) {
    SDWholeDisk disk = {.id = "disk4s1", .mediaName = "Disk", .busProtocol = "SATA", .isInternal = true};
    const struct {
        std::string reason;
        Change repair;
    } steps[] = {
        {"Detailed disk information could not be read.", [](auto& d) { d.hasDetailedInfo = true; }},
        {notAnIdentifier, [](auto& d) { d.id = "disk0"; }},
        {"disk0 is always protected.", [](auto& d) { d.id = "disk4"; }},
        {"The item is a partition rather than a whole disk.", [](auto& d) { d.isWhole = true; }},
        {"The disk is virtual or synthesized rather than physical media.",
         [](auto& d) { d.isPhysical = true; }},
        {fixedDrive, [](auto& d) { d.busProtocol = "USB"; }},
        {notRecognized, [](auto& d) { d.mediaName = "SD Card"; }},
        {systemWords().cardNotWritable, [](auto& d) { d.isWritable = true; }},
        {tooSmall, [](auto& d) { d.sizeBytes = maximumCardSize + 1; }},
        {tooLarge, [](auto& d) { d.sizeBytes = 32'000'000'000; }},
        {internalMedia, [](auto& d) { d.isInternal.reset(); }},
        {notConfirmed, [](auto& d) { d.isRemovable = true; }},
        {eligible, [](auto&) {}},
    };
    for (const auto& [reason, repair] : steps) {
        EXPECT_EQ(eligibilityFailureReason(disk).value_or(eligible), reason);
        repair(disk);
    }
}

TEST(SDCardPolicyTests, everyDoubtCountsAgainstTheDisk) {
    const struct {
        const char* reason;
        Change change;
    } cases[] = {
        {eligible, [](auto&) {}},
        {"Detailed disk information could not be read.",
         [](auto& d) {
             d.id = "disk0";
             d.hasDetailedInfo = false;
         }},
        {eligible, [](auto& d) { d.id = "disk00"; }},
        {eligible, [](auto& d) { d.id = "disk01"; }},
        {notAnIdentifier, [](auto& d) { d.id = "disk"; }},
        {notAnIdentifier, [](auto& d) { d.id = "rdisk4"; }},
        {notAnIdentifier, [](auto& d) { d.id = "/dev/disk4"; }},
        {notAnIdentifier, [](auto& d) { d.id = "disk4\n"; }},
        {notAnIdentifier, [](auto& d) { d.id = "disk٤"; }},
        {tooSmall, [](auto& d) { d.sizeBytes = 536'870'911; }},
        {eligible, [](auto& d) { d.sizeBytes = 536'870'912; }},
        {eligible, [](auto& d) { d.sizeBytes = 549'755'813'888; }},
        {tooLarge, [](auto& d) { d.sizeBytes = 549'755'813'889; }},
        {fixedDrive, [](auto& d) { d.mediaName = "My SSD Card"; }},
        {fixedDrive, [](auto& d) { d.mediaName = "SD Card Solid State"; }},
        {fixedDrive, [](auto& d) { d.busProtocol = " PCI-Express "; }},
        {notRecognized, [](auto& d) { d.mediaName = "Generic MassStorageClass"; }},
        {notRecognized, [](auto& d) { d.mediaName = "SD"; }},
        {notRecognized,
         [](auto& d) {
             d.mediaName = "Reader";
             d.busProtocol = "microSD over USB";
         }},
        {eligible, [](auto& d) { d.mediaName = "Built-in SDXC Reader Media"; }},
        {eligible,
         [](auto& d) {
             d.mediaName = "Reader";
             d.busProtocol = " sd ";
         }},
    };
    for (const auto& [reason, change] : cases) {
        const SDWholeDisk disk = changed(change);
        EXPECT_EQ(eligibilityFailureReason(disk).value_or(eligible), reason)
            << disk.id << ", " << disk.mediaName << ", " << disk.busProtocol << ", " << disk.sizeBytes;
    }
}

TEST(SDCardPolicyTests, oneSignOfMovableMediaIsEnough) {
    SDWholeDisk bare = cardInReader();
    bare.isInternal.reset();
    bare.deviceLocation.clear();
    bare.isRemovable = bare.isEjectable = false;
    EXPECT_EQ(eligibilityFailureReason(bare), notConfirmed);

    const Change signs[] = {
        [](auto& d) { d.isInternal = false; },
        [](auto& d) { d.deviceLocation = " EXTERNAL port"; },
        [](auto& d) { d.isRemovable = true; },
        [](auto& d) { d.isEjectable = true; },
        [](auto& d) { d.busProtocol = "Secure Digital"; },
    };
    for (size_t i = 0; i < std::size(signs); ++i) {
        SDWholeDisk disk = bare;
        signs[i](disk);
        EXPECT_EQ(eligibilityFailureReason(disk), std::nullopt) << "sign " << i;
    }

    SDWholeDisk builtIn = bare;
    builtIn.isInternal = true;
    builtIn.deviceLocation = "External";
    EXPECT_EQ(eligibilityFailureReason(builtIn), internalMedia);
    builtIn.busProtocol = "Secure Digital";
    EXPECT_EQ(eligibilityFailureReason(builtIn), std::nullopt);
}

TEST(SDCardPolicyTests, chooseableDisksAreListedFirst) {
    const auto named = [](const char* id, Change change) {
        SDWholeDisk disk = changed(change);
        disk.id = id;
        return disk;
    };
    std::vector<SDWholeDisk> disks = {
        named("disk0",
              [](auto& d) {
                  d.mediaName = "Flash";
                  d.isInternal = true;
                  d.isRemovable = d.isEjectable = false;
                  d.sizeBytes = 1;
              }),
        named("disk6", [](auto& d) { d.mediaName = "Stick"; }),
        named("disk5", [](auto& d) { d.isWritable = false; }),
        named("disk10", [](auto&) {}),
        named("disk9", [](auto&) {}),
        named("disk11", [](auto& d) { d.sizeBytes = 16'000'000'000; }),
    };
    sortForDisplay(disks);

    std::vector<std::string> order;
    for (const SDWholeDisk& disk : disks)
        order.push_back(disk.id);
    EXPECT_THAT(order, testing::ElementsAre("disk11", "disk9", "disk10", "disk5", "disk6", "disk0"));
}

TEST(SDCardPolicyTests, theSameDiskIsKnownByIdentifierSizeNameAndBus) {
    const struct {
        bool same;
        Change change;
    } cases[] = {
        {true,
         [](auto& d) {
             d.mediaName = " sd  CÄRD-Ｒeader!";
             d.busProtocol = "usb";
         }},
        {true,
         [](auto& d) {
             d.partitions = {{.id = "disk4s1"}};
             d.deviceLocation = "Elsewhere";
             d.isWritable = false;
             d.isInternal.reset();
         }},
        {false, [](auto& d) { d.mediaName = "SDCard Reader"; }},
        {false, [](auto& d) { d.mediaName = "SD Card Reader 2"; }},
        {false, [](auto& d) { d.busProtocol = "USB 3"; }},
        {false, [](auto& d) { d.sizeBytes += 512; }},
        {false, [](auto& d) { d.id = "disk04"; }},
    };
    for (size_t i = 0; i < std::size(cases); ++i) {
        EXPECT_EQ(isSameDisk(cardInReader(), changed(cases[i].change)), cases[i].same) << "case " << i;
    }
}

}  // namespace tessel
